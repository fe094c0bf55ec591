#pragma once

#include "VexaEnum.h"

// What the player tells a play logic about its playback ({"callback": <name>, ...}).
struct VEXA_API VexaPlayLogicCallback : VexaEnum<VexaPlayLogicCallback>
{
    enum Enum {
        MediaPlaybackStarted = 0,
        PrepareNextMedia = 1,
        TryResumePlayback = 2,
        PlaybackStopped = 3,
        PlaybackEnded = 4,
        PlayTimeChanged = 5
    };
    static const VexaEnumTable& table();
};
