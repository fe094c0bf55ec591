#pragma once

#include "playlistUI/BaseNode.h"

// The menu of the play queue.
class PlayQueueContextNode : public BaseNode
{
public:
    using BaseNode::BaseNode;
    static PlayQueueContextNode* create(CMNodes* nodes, const CMPath& path, PlayListManager* manager);

    bool getRowsRequest(const CMGetRowsRequest& request) override;
    bool setDataRequest(const CMSetDataRequest& request) override;
};
