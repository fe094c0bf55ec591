#include "CMNode.h"

#include "CMNodes.h"

CMNode::CMNode(const CMPath& path) : m_path(path)
{
}

CMNode::~CMNode()
{
    if (m_nodes)
        m_nodes->unregisterNode(this);
}

void CMNode::setNodes(CMNodes* nodes)
{
    if (m_nodes)
        m_nodes->unregisterNode(this);
    m_nodes = nodes;
    if (m_nodes)
        m_nodes->registerNode(this);
}

bool CMNode::getRowsRequest(const CMGetRowsRequest&)
{
    return false;
}

bool CMNode::setDataRequest(const CMSetDataRequest&)
{
    return false;
}

VexaRoles CMNode::getDataRoles(const QStringList& roleNames, const CMPath::Params& params) const
{
    CMPath path(m_path);
    path.setParams(params);
    VexaRoles roles;
    if (roleNames.contains(QStringLiteral("*")) || roleNames.contains(VexaRoles::Path()))
        roles.setPath(path);
    return roles;
}

void CMNode::release()
{
    delete this;
}
