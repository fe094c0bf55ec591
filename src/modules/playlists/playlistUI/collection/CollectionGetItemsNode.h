#pragma once

#include "playlistUI/BaseNode.h"

// The playlists of one collection, chosen by the request's "clid".
class CollectionGetItemsNode : public BaseNode
{
public:
    using BaseNode::BaseNode;
    static CollectionGetItemsNode* create(CMNodes* nodes, const CMPath& path, PlayListManager* manager);

    bool getRowsRequest(const CMGetRowsRequest& request) override;
};
