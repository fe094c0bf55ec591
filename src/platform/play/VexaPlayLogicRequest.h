#pragma once

#include "VexaError.h"
#include "VexaPlayLogicCallback.h"
#include "VexaPlayLogicCommand.h"
#include "VexaRoles.h"

// The value of a request between the player and a play logic: a command
// ({"command": "play", ...}) or a callback ({"callback": "prepareNextMedia", ...})
// with its arguments beside it in the same object. A play command carries the
// keys of VexaPlayLogicPlayArgs, a change of play mode those of
// VexaPlayLogicChangePlayModeArgs; the other arguments are named here.
class VEXA_API VexaPlayLogicRequest : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString Command() { return QStringLiteral("command"); }
    static QString Callback() { return QStringLiteral("callback"); }
    // mediaPlaybackStarted: the media that played before (empty when none) and the one that starts.
    static QString OldRoles() { return QStringLiteral("oldRoles"); }
    static QString NewRoles() { return QStringLiteral("newRoles"); }
    // tryResumePlayback: why the media could not start.
    static QString StreamerError() { return QStringLiteral("streamerError"); }
    // playTimeChanged, seekTime: milliseconds into the media.
    static QString PlayTimeMs() { return QStringLiteral("playTimeMs"); }
    static QString PositionMs() { return QStringLiteral("positionMs"); }
    // seekBytes: bytes into the media.
    static QString PositionBytes() { return QStringLiteral("positionBytes"); }
    // setCurrentTrack: the track to make current.
    static QString TrackRoles() { return QStringLiteral("trackRoles"); }

    static VexaPlayLogicRequest command(VexaPlayLogicCommand::Enum command)
    {
        VexaPlayLogicRequest request;
        request.insert(Command(), VexaPlayLogicCommand::toString(command));
        return request;
    }
    static VexaPlayLogicRequest callback(VexaPlayLogicCallback::Enum callback)
    {
        VexaPlayLogicRequest request;
        request.insert(Callback(), VexaPlayLogicCallback::toString(callback));
        return request;
    }

    bool isCommand() const { return contains(Command()); }
    bool isCallback() const { return contains(Callback()); }
    VexaPlayLogicCommand::Enum command(bool* ok) const { return VexaPlayLogicCommand::fromVariant(value(Command()), ok); }
    VexaPlayLogicCallback::Enum callback(bool* ok) const
    {
        return VexaPlayLogicCallback::fromVariant(value(Callback()), ok);
    }

    VexaRoles oldRoles() const { return VexaRoles(hashValue(OldRoles())); }
    void setOldRoles(const VexaRoles& v) { insert(OldRoles(), v.toVariant()); }
    VexaRoles newRoles() const { return VexaRoles(hashValue(NewRoles())); }
    void setNewRoles(const VexaRoles& v) { insert(NewRoles(), v.toVariant()); }
    VexaError streamerError() const { return VexaError(hashValue(StreamerError())); }
    void setStreamerError(const VexaError& v) { insert(StreamerError(), v.toVariant()); }
    qint64 playTimeMs() const { return value(PlayTimeMs()).toLongLong(); }
    void setPlayTimeMs(qint64 v) { insert(PlayTimeMs(), v); }
    qint64 positionMs() const { return value(PositionMs()).toLongLong(); }
    void setPositionMs(qint64 v) { insert(PositionMs(), v); }
    qint64 positionBytes() const { return value(PositionBytes()).toLongLong(); }
    void setPositionBytes(qint64 v) { insert(PositionBytes(), v); }
    VexaRoles trackRoles() const { return VexaRoles(hashValue(TrackRoles())); }
    void setTrackRoles(const VexaRoles& v) { insert(TrackRoles(), v.toVariant()); }
};
