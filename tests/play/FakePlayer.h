#pragma once

#include <VexaPlayer.h>

#include <QList>

// A player that only notes what play logics ask of it.
class FakePlayer : public VexaPlayer
{
public:
    struct Call
    {
        QString op;
        CMPath path;
        VexaRoles roles;
        int number = -1;
        VexaPlayLogicData data;
    };

    bool playContainer(const VexaRoles& containerRoles, const VexaRoles& trackRoles, int index, qint64 startPositionMs,
                       bool paused) override;
    bool stop(VexaPlayLogicStopReason::Enum reason) override;
    bool play(const CMPath& playLogicPath, const VexaRoles& trackRoles, const QVariantHash& options) override;
    bool setNextMedia(const CMPath& playLogicPath, const VexaRoles& trackRoles, const QVariantHash& options) override;
    bool clearNextMedia(const CMPath& playLogicPath) override;
    void publishData(const CMPath& playLogicPath, const VexaPlayLogicData& data) override;
    void publishPlayMode(const CMPath& playLogicPath, VexaPlayerPlayMode::Enum mode) override;
    qint64 positionMs() const override { return position; }

    QStringList ops() const;
    // The calls named op, in order.
    QList<Call> callsOf(const QString& op) const;

    QList<Call> calls;
    qint64 position = 0;
};
