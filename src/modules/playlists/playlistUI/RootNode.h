#pragma once

#include "playlistUI/BaseNode.h"

// The entry of the browse tree: the play queue, the playlists and the
// collections, with rows that create a playlist or a collection.
class RootNode : public BaseNode
{
public:
    using BaseNode::BaseNode;
    static RootNode* create(CMNodes* nodes, const CMPath& path, PlayListManager* manager);

    bool getRowsRequest(const CMGetRowsRequest& request) override;
    // Carries out "createPl" and "createCl" through the module's commands.
    bool setDataRequest(const CMSetDataRequest& request) override;
};
