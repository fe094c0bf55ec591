#pragma once

#include "VexaEnum.h"

struct VEXA_API VexaRolesType : VexaEnum<VexaRolesType>
{
    enum Enum { None = 0, Container = 1, Audio = 2, Input = 101, Action = 102, Header = 103, Separator = 105 };
    static const VexaEnumTable& table();
};
