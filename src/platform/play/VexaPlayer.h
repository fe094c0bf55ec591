#pragma once

#include "CMPath.h"
#include "VexaPlayLogicData.h"
#include "VexaPlayLogicStopReason.h"
#include "VexaPlayerPlayMode.h"
#include "VexaRoles.h"

#include <QVariantHash>

// The device's player as play logics and controllers see it. Every call is
// thread-safe and returns at once: the player never waits for a module's
// worker, and reaches a play logic only through requests on that worker.
class VEXA_API VexaPlayer
{
public:
    virtual ~VexaPlayer() = default;

    // Hands playback of a container to the play logic named by the container's
    // media data (metaData.playLogicPath), starting at the track with index.
    virtual bool playContainer(const VexaRoles& containerRoles, const VexaRoles& trackRoles, int index,
                               qint64 startPositionMs, bool paused) = 0;
    // Stops whatever plays.
    virtual bool stop(VexaPlayLogicStopReason::Enum reason) = 0;
    // Stops playback only while the play logic at playLogicPath is the one
    // playing, so that a play logic that ends late never stops another's
    // playback. A player without that notion stops whatever plays.
    virtual bool stopPlayLogic(const CMPath& /*playLogicPath*/, VexaPlayLogicStopReason::Enum reason)
    {
        return stop(reason);
    }

    // The play logic at playLogicPath starts a track now.
    virtual bool play(const CMPath& playLogicPath, const VexaRoles& trackRoles, const QVariantHash& options) = 0;
    // The play logic announces the track to start when the current one ends.
    virtual bool setNextMedia(const CMPath& playLogicPath, const VexaRoles& trackRoles, const QVariantHash& options) = 0;
    // The play logic has no track to follow the current one.
    virtual bool clearNextMedia(const CMPath& playLogicPath) = 0;
    // The play logic's published data and play mode, shown in the player's status.
    virtual void publishData(const CMPath& playLogicPath, const VexaPlayLogicData& data) = 0;
    virtual void publishPlayMode(const CMPath& playLogicPath, VexaPlayerPlayMode::Enum mode) = 0;

    // How long the current media has played, in milliseconds of the player's clock.
    virtual qint64 positionMs() const = 0;
};
