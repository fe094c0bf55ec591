#pragma once

#include "VexaError.h"
#include "VexaPlayLogicControls.h"
#include "VexaRoles.h"

// What a play logic publishes about its playback: the track that plays, the
// controls on offer, and the errors of the player and the streamer.
class VEXA_API VexaPlayLogicData : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString TrackRoles() { return QStringLiteral("trackRoles"); }
    static QString Controls() { return QStringLiteral("controls"); }
    static QString Error() { return QStringLiteral("error"); }
    static QString StreamerError() { return QStringLiteral("streamerError"); }

    VexaRoles trackRoles() const { return VexaRoles(hashValue(TrackRoles())); }
    void setTrackRoles(const VexaRoles& v) { insert(TrackRoles(), v.toVariant()); }
    VexaPlayLogicControls controls() const { return VexaPlayLogicControls(hashValue(Controls())); }
    void setControls(const VexaPlayLogicControls& v) { insert(Controls(), v.toVariant()); }
    VexaError error() const { return VexaError(hashValue(Error())); }
    void setError(const VexaError& v) { insert(Error(), v.toVariant()); }
    VexaError streamerError() const { return VexaError(hashValue(StreamerError())); }
    void setStreamerError(const VexaError& v) { insert(StreamerError(), v.toVariant()); }
};

Q_DECLARE_METATYPE(VexaPlayLogicData)
