#pragma once

#include "VexaEnum.h"

// A play mode is made of two parts, whether the order is shuffled and what
// repeats; the numbers encode them (bit 0 shuffle, the bits above repeat).
struct VEXA_API VexaPlayerPlayMode : VexaEnum<VexaPlayerPlayMode>
{
    enum Enum { Normal = 0, Shuffle = 1, RepeatOne = 2, ShuffleRepeatOne = 3, RepeatAll = 4, ShuffleRepeatAll = 5 };
    enum class Repeat { None = 0, One = 1, All = 2 };
    static const VexaEnumTable& table();

    static bool isValid(int mode) { return mode >= Normal && mode <= ShuffleRepeatAll; }
    static bool shuffles(int mode) { return (mode & 1) != 0; }
    static Repeat repeat(int mode) { return Repeat(mode >> 1); }
    static Enum compose(bool shuffle, Repeat repeat) { return Enum((int(repeat) << 1) | (shuffle ? 1 : 0)); }
};
