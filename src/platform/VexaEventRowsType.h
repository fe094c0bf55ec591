#pragma once

#include "VexaEnum.h"

struct VEXA_API VexaEventRowsType : VexaEnum<VexaEventRowsType>
{
    enum Enum { Close = 1 };
    static const VexaEnumTable& table();
};
