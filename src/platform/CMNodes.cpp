#include "CMNodes.h"

#include "CMNode.h"

CMNode* CMNodes::find(const CMPath& path) const
{
    QMutexLocker lock(&m_mutex);
    return m_nodes.value(path.base());
}

void CMNodes::registerNode(CMNode* node)
{
    QMutexLocker lock(&m_mutex);
    m_nodes.insert(node->path().base(), node);
}

void CMNodes::unregisterNode(CMNode* node)
{
    QMutexLocker lock(&m_mutex);
    const QString key = node->path().base();
    if (m_nodes.value(key) == node)
        m_nodes.remove(key);
}
