#include "VexaRolesContainerType.h"

const VexaEnumTable& VexaRolesContainerType::table()
{
    static const VexaEnumTable names({ {None, "none"}, {ContextMenu, "contextMenu"} });
    return names;
}
