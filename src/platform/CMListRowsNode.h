#pragma once

#include "CMContainerNode.h"

// A container whose content is a list of rows, answered page by page.
class VEXA_API CMListRowsNode : public CMContainerNode
{
public:
    using CMContainerNode::CMContainerNode;
};
