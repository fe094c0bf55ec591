#include "CMUINode.h"

VexaRoles CMUINode::getDataRoles(const QStringList& roleNames, const CMPath::Params& params) const
{
    VexaRoles all = CMNode::getDataRoles({VexaRoles::Path()}, params);
    fillDataRoles(all);
    if (roleNames.contains(QStringLiteral("*")))
        return all;
    VexaRoles roles;
    for (const QString& name : roleNames) {
        if (all.contains(name))
            roles.insert(name, all.value(name));
    }
    return roles;
}

void CMUINode::fillDataRoles(VexaRoles& roles) const
{
    roles.setTitle(m_title.text());
    roles.setType(m_type);
    if (!m_mediaData.isEmpty())
        roles.setMediaData(m_mediaData);
}
