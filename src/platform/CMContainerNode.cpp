#include "CMContainerNode.h"

CMContainerNode::CMContainerNode(const CMPath& path) : CMUINode(path)
{
    setType(VexaRolesType::Container);
}

void CMContainerNode::fillDataRoles(VexaRoles& roles) const
{
    CMUINode::fillDataRoles(roles);
    roles.setContainerType(m_containerType);
}
