#pragma once

#include "playlistUI/playlist/PlayListGetItemsNode.h"

// The tracks of the play queue.
class PlayQueueGetItemsNode : public PlayListGetItemsNode
{
public:
    using PlayListGetItemsNode::PlayListGetItemsNode;
    static PlayQueueGetItemsNode* create(CMNodes* nodes, const CMPath& path, PlayListManager* manager);

    bool getRowsRequest(const CMGetRowsRequest& request) override;
};
