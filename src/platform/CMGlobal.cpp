#include "CMGlobal.h"

QVariant CMGlobal::itemRolesToList(const QStringList& roleNames, const VexaRoles& roles)
{
    if (roleNames.size() == 1 && roleNames.first() == QLatin1String("*"))
        return roles.toVariant();
    QVariantList row;
    row.reserve(roleNames.size());
    for (const QString& name : roleNames)
        row.append(roles.contains(name) ? roles.value(name) : QVariant::fromValue(nullptr));
    return row;
}
