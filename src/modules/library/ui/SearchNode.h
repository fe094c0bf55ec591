#pragma once

#include "ui/ListNode.h"

// library:/search: its rows are the results of ?q=TEXT; setting a text (the
// root's search input) answers the path of its results.
class SearchNode : public ListNode
{
public:
    using ListNode::ListNode;

    bool setDataRequest(const CMSetDataRequest& request) override;
};
