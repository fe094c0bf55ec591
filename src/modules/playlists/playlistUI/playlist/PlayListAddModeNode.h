#pragma once

#include "playlistUI/BaseNode.h"

// Picks where new entries go: now, after the current entry, or at the end.
class PlayListAddModeNode : public BaseNode
{
public:
    using BaseNode::BaseNode;
    static PlayListAddModeNode* create(CMNodes* nodes, const CMPath& path, PlayListManager* manager);

    bool getRowsRequest(const CMGetRowsRequest& request) override;
    // Adds the chosen item ("itemid") to playlist "plid" at "mode"; without
    // an item, the whole playlist "fromplid".
    bool setDataRequest(const CMSetDataRequest& request) override;
};
