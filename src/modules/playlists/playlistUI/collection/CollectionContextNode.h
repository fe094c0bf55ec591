#pragma once

#include "playlistUI/BaseNode.h"

// The menu of one collection ("clid").
class CollectionContextNode : public BaseNode
{
public:
    using BaseNode::BaseNode;
    static CollectionContextNode* create(CMNodes* nodes, const CMPath& path, PlayListManager* manager);

    bool getRowsRequest(const CMGetRowsRequest& request) override;
    bool setDataRequest(const CMSetDataRequest& request) override;
};
