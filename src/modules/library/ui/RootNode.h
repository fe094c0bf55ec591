#pragma once

#include "ui/LibraryNode.h"

// library:/root: the ways into the library, and the search input.
class RootNode : public LibraryNode
{
public:
    using LibraryNode::LibraryNode;

    bool getRowsRequest(const CMGetRowsRequest& request) override;
};
