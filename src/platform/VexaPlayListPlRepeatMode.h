#pragma once

#include "VexaEnum.h"

struct VEXA_API VexaPlayListPlRepeatMode : VexaEnum<VexaPlayListPlRepeatMode>
{
    enum Enum { Off = 0, One = 1, All = 2, OneAndAll = 3 };
    static const VexaEnumTable& table();
};
