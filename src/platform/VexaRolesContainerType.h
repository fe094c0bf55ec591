#pragma once

#include "VexaEnum.h"

struct VEXA_API VexaRolesContainerType : VexaEnum<VexaRolesContainerType>
{
    enum Enum { None = 0, ContextMenu = 100 };
    static const VexaEnumTable& table();
};
