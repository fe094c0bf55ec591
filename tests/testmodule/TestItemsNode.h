#pragma once

#include <CMListRowsNode.h>

// A list of 25 audio rows ("Item 0" ... "Item 24"), answered page by page.
class TestItemsNode : public CMListRowsNode
{
public:
    static constexpr int kRows = 25;

    explicit TestItemsNode(const CMPath& path);

    bool getRowsRequest(const CMGetRowsRequest& request) override;
};
