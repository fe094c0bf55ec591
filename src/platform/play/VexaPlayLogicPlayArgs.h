#pragma once

#include "VexaRoles.h"

// The arguments of a play command: the container, the track in it, the
// track's index and how to read them (type 1: play the container at index).
class VEXA_API VexaPlayLogicPlayArgs : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString MediaRoles() { return QStringLiteral("mediaRoles"); }
    static QString TrackRoles() { return QStringLiteral("trackRoles"); }
    static QString Index() { return QStringLiteral("index"); }
    static QString Type() { return QStringLiteral("type"); }

    VexaRoles mediaRoles() const { return VexaRoles(hashValue(MediaRoles())); }
    void setMediaRoles(const VexaRoles& v) { insert(MediaRoles(), v.toVariant()); }
    VexaRoles trackRoles() const { return VexaRoles(hashValue(TrackRoles())); }
    void setTrackRoles(const VexaRoles& v) { insert(TrackRoles(), v.toVariant()); }
    int index() const { return intValue(Index(), 0); }
    void setIndex(int v) { insert(Index(), v); }
    int type() const { return intValue(Type(), 0); }
    void setType(int v) { insert(Type(), v); }
};
