#pragma once

#include "playlistUI/BaseNode.h"

// The menu of one entry of a playlist, opened from a track row: its path
// holds "plid", "itemid" and "seqnum".
class PlayListTrackContextNode : public BaseNode
{
public:
    using BaseNode::BaseNode;
    static PlayListTrackContextNode* create(CMNodes* nodes, const CMPath& path, PlayListManager* manager);

    bool getRowsRequest(const CMGetRowsRequest& request) override;
    bool setDataRequest(const CMSetDataRequest& request) override;
};
