#pragma once

#include "VexaPlayer.h"

// What a play logic may ask of the platform: the player. The host installs
// its player at start; until then (and in tests that install none) a player
// that plays nothing answers.
class VEXA_API PlayLogicInterface
{
public:
    virtual ~PlayLogicInterface() = default;

    static VexaPlayer* playerInstance();
    // Installs player (not owned); null restores the player that plays nothing.
    static void setPlayerInstance(VexaPlayer* player);
};
