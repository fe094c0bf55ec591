#pragma once

#include "VexaPlayer.h"

// The player that answers while none is installed: it plays nothing and
// refuses every request to play.
class NullPlayer : public VexaPlayer
{
public:
    bool playContainer(const VexaRoles& containerRoles, const VexaRoles& trackRoles, int index, qint64 startPositionMs,
                       bool paused) override;
    bool stop(VexaPlayLogicStopReason::Enum reason) override;
    bool play(const CMPath& playLogicPath, const VexaRoles& trackRoles, const QVariantHash& options) override;
    bool setNextMedia(const CMPath& playLogicPath, const VexaRoles& trackRoles, const QVariantHash& options) override;
    bool clearNextMedia(const CMPath& playLogicPath) override;
    void publishData(const CMPath& playLogicPath, const VexaPlayLogicData& data) override;
    void publishPlayMode(const CMPath& playLogicPath, VexaPlayerPlayMode::Enum mode) override;
    qint64 positionMs() const override;
};
