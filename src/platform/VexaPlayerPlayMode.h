#pragma once

#include "VexaEnum.h"

struct VEXA_API VexaPlayerPlayMode : VexaEnum<VexaPlayerPlayMode>
{
    enum Enum { Normal = 0, Shuffle = 1, RepeatOne = 2, ShuffleRepeatOne = 3, RepeatAll = 4, ShuffleRepeatAll = 5 };
    static const VexaEnumTable& table();
};
