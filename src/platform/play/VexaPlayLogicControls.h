#pragma once

#include "VexaPlayLogicPlayModesSupported.h"

// The controls a user may use on what plays now.
class VEXA_API VexaPlayLogicControls : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString Pause() { return QStringLiteral("pause"); }
    static QString Next_() { return QStringLiteral("next_"); }
    static QString Previous() { return QStringLiteral("previous"); }
    static QString SeekTime() { return QStringLiteral("seekTime"); }
    static QString SeekBytes() { return QStringLiteral("seekBytes"); }
    static QString PlayMode() { return QStringLiteral("playMode"); }

    bool pause() const { return boolValue(Pause()); }
    void setPause(bool v) { insert(Pause(), v); }
    bool next_() const { return boolValue(Next_()); }
    void setNext_(bool v) { insert(Next_(), v); }
    bool previous() const { return boolValue(Previous()); }
    void setPrevious(bool v) { insert(Previous(), v); }
    bool seekTime() const { return boolValue(SeekTime()); }
    void setSeekTime(bool v) { insert(SeekTime(), v); }
    bool seekBytes() const { return boolValue(SeekBytes()); }
    void setSeekBytes(bool v) { insert(SeekBytes(), v); }
    VexaPlayLogicPlayModesSupported playMode() const { return VexaPlayLogicPlayModesSupported(hashValue(PlayMode())); }
    void setPlayMode(const VexaPlayLogicPlayModesSupported& v) { insert(PlayMode(), v.toVariant()); }
};
