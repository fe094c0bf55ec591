#include "NullPlayer.h"

bool NullPlayer::playContainer(const VexaRoles&, const VexaRoles&, int, qint64, bool)
{
    return false;
}

bool NullPlayer::stop(VexaPlayLogicStopReason::Enum)
{
    return false;
}

bool NullPlayer::play(const CMPath&, const VexaRoles&, const QVariantHash&)
{
    return false;
}

bool NullPlayer::setNextMedia(const CMPath&, const VexaRoles&, const QVariantHash&)
{
    return false;
}

bool NullPlayer::clearNextMedia(const CMPath&)
{
    return false;
}

void NullPlayer::publishData(const CMPath&, const VexaPlayLogicData&)
{
}

void NullPlayer::publishPlayMode(const CMPath&, VexaPlayerPlayMode::Enum)
{
}

qint64 NullPlayer::positionMs() const
{
    return 0;
}
