#pragma once

#include "VexaEnum.h"

struct VEXA_API VexaPlayListPlShuffleMode : VexaEnum<VexaPlayListPlShuffleMode>
{
    enum Enum { Off = 0, On = 1 };
    static const VexaEnumTable& table();
};
