#pragma once

#include "ui/LibraryNode.h"

// Every list of the library below the root: artists, albums, genres,
// folders, all tracks, search results and each container's content, paged
// from the store as the browser describes them.
class ListNode : public LibraryNode
{
public:
    using LibraryNode::LibraryNode;

    bool getRowsRequest(const CMGetRowsRequest& request) override;
};
