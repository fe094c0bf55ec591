#pragma once

#include "VexaRoles.h"

#include <QStringList>
#include <QVariant>

class VEXA_API CMGlobal
{
public:
    // One row as the client asked for it: the values of roleNames in that
    // order, null where a role is absent; for "*" the whole roles object.
    static QVariant itemRolesToList(const QStringList& roleNames, const VexaRoles& roles);
};
