#include "FakePlayer.h"

bool FakePlayer::playContainer(const VexaRoles& containerRoles, const VexaRoles&, int index, qint64, bool)
{
    calls.append({QStringLiteral("playContainer"), containerRoles.mediaData().metaData().playLogicPath(), containerRoles,
                  index, {}});
    return true;
}

bool FakePlayer::stop(VexaPlayLogicStopReason::Enum reason)
{
    calls.append({QStringLiteral("stop"), {}, {}, reason, {}});
    return true;
}

bool FakePlayer::play(const CMPath& playLogicPath, const VexaRoles& trackRoles, const QVariantHash&)
{
    calls.append({QStringLiteral("play"), playLogicPath, trackRoles, -1, {}});
    return true;
}

bool FakePlayer::setNextMedia(const CMPath& playLogicPath, const VexaRoles& trackRoles, const QVariantHash&)
{
    calls.append({QStringLiteral("setNextMedia"), playLogicPath, trackRoles, -1, {}});
    return true;
}

bool FakePlayer::clearNextMedia(const CMPath& playLogicPath)
{
    calls.append({QStringLiteral("clearNextMedia"), playLogicPath, {}, -1, {}});
    return true;
}

void FakePlayer::publishData(const CMPath& playLogicPath, const VexaPlayLogicData& data)
{
    calls.append({QStringLiteral("publishData"), playLogicPath, {}, -1, data});
}

void FakePlayer::publishPlayMode(const CMPath& playLogicPath, VexaPlayerPlayMode::Enum mode)
{
    calls.append({QStringLiteral("publishPlayMode"), playLogicPath, {}, mode, {}});
}

QStringList FakePlayer::ops() const
{
    QStringList names;
    for (const Call& call : calls)
        names.append(call.op);
    return names;
}

QList<FakePlayer::Call> FakePlayer::callsOf(const QString& op) const
{
    QList<Call> found;
    for (const Call& call : calls) {
        if (call.op == op)
            found.append(call);
    }
    return found;
}
