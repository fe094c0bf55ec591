#pragma once

#include "VexaEnum.h"

struct VEXA_API VexaPlayListAddPosition : VexaEnum<VexaPlayListAddPosition>
{
    enum Enum { Now = 0, Next = 1, Append = 2 };
    static const VexaEnumTable& table();
};
