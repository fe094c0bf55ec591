#pragma once

#include "VexaPlayerPlayMode.h"
#include "VexaValue.h"

// The argument of a change of play mode: {"playMode": <name or number>}.
class VEXA_API VexaPlayLogicChangePlayModeArgs : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString PlayMode() { return QStringLiteral("playMode"); }

    VexaPlayerPlayMode::Enum playMode() const { return VexaPlayerPlayMode::fromVariant(value(PlayMode())); }
    void setPlayMode(VexaPlayerPlayMode::Enum v) { insert(PlayMode(), VexaPlayerPlayMode::toString(v)); }
};
