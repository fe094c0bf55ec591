#pragma once

#include "VexaEnum.h"

// Why a play logic asks the player to stop.
struct VEXA_API VexaPlayLogicStopReason : VexaEnum<VexaPlayLogicStopReason>
{
    enum Enum { Stopped = 0, Error = 1, EndOfContent = 2 };
    static const VexaEnumTable& table();
};
