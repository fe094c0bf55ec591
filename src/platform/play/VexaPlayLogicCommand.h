#pragma once

#include "VexaEnum.h"

// What the player asks of a play logic ({"command": <name>, ...}).
struct VEXA_API VexaPlayLogicCommand : VexaEnum<VexaPlayLogicCommand>
{
    enum Enum {
        Play = 0,
        Stop = 1,
        Pause = 2,
        Previous = 3,
        Next = 4,
        Like = 5,
        Dislike = 6,
        SeekTime = 7,
        SeekBytes = 8,
        SetCurrentTrack = 9,
        ChangePlayMode = 10
    };
    static const VexaEnumTable& table();
};
