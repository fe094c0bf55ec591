#include "ProbePlayLogic.h"

void ProbePlayLogic::note(const QString& call, const CMSetDataRequest& request)
{
    calls.append(call);
    replyFinishedSeen = request.reply().isFinished();
    request.reply().setData(call);
}

void ProbePlayLogic::playInternal(const CMSetDataRequest& request, const VexaPlayLogicPlayArgs& args)
{
    playArgs = args;
    note(QStringLiteral("playInternal"), request);
}

void ProbePlayLogic::stopInternal(const CMSetDataRequest& request)
{
    note(QStringLiteral("stopInternal"), request);
}

void ProbePlayLogic::pauseInternal(const CMSetDataRequest& request)
{
    note(QStringLiteral("pauseInternal"), request);
}

void ProbePlayLogic::previousInternal(const CMSetDataRequest& request)
{
    note(QStringLiteral("previousInternal"), request);
}

void ProbePlayLogic::nextInternal(const CMSetDataRequest& request)
{
    note(QStringLiteral("nextInternal"), request);
}

void ProbePlayLogic::seekTimeInternal(const CMSetDataRequest& request)
{
    note(QStringLiteral("seekTimeInternal"), request);
}

void ProbePlayLogic::seekBytesInternal(const CMSetDataRequest& request)
{
    note(QStringLiteral("seekBytesInternal"), request);
}

void ProbePlayLogic::likeInternal(const CMSetDataRequest& request)
{
    note(QStringLiteral("likeInternal"), request);
}

void ProbePlayLogic::dislikeInternal(const CMSetDataRequest& request)
{
    note(QStringLiteral("dislikeInternal"), request);
}

void ProbePlayLogic::setCurrentTrackInternal(const CMSetDataRequest& request)
{
    note(QStringLiteral("setCurrentTrackInternal"), request);
}

void ProbePlayLogic::changePlayModeInternal(const CMSetDataRequest& request)
{
    note(QStringLiteral("changePlayModeInternal"), request);
}

void ProbePlayLogic::prepareNextMedia()
{
    calls.append(QStringLiteral("prepareNextMedia"));
    StreamerPlayLogic::prepareNextMedia();
}

VexaPlayLogicData ProbePlayLogic::translatePlayLogicStatus(const VexaPlayLogicData& data)
{
    VexaPlayLogicData translated = data;
    translated.insert(QStringLiteral("translated"), true);
    return translated;
}

VexaPlayLogicData ProbePlayLogic::mediaPlaybackStarted(const VexaRoles& oldRoles, const VexaRoles& newRoles)
{
    calls.append(QStringLiteral("mediaPlaybackStarted"));
    dataSeen = data();
    oldRolesSeen = oldRoles;
    newRolesSeen = newRoles;
    return StreamerPlayLogic::mediaPlaybackStarted(oldRoles, newRoles);
}

void ProbePlayLogic::tryResumePlayback()
{
    calls.append(QStringLiteral("tryResumePlayback"));
    dataSeen = data();
    StreamerPlayLogic::tryResumePlayback();
}

void ProbePlayLogic::playbackStopped()
{
    calls.append(QStringLiteral("playbackStopped"));
}

void ProbePlayLogic::playbackEnded()
{
    calls.append(QStringLiteral("playbackEnded"));
    StreamerPlayLogic::playbackEnded();
}

bool ProbePlayLogic::handleAlternate(const CMSetDataRequest& request)
{
    calls.append(QStringLiteral("handleAlternate"));
    if (!takeAlternate)
        return false;
    request.reply().setData(QStringLiteral("alternate"));
    return true;
}

void ProbePlayLogic::playTimeChangedInternal(qint64 playTimeMs)
{
    calls.append(QStringLiteral("playTimeChanged"));
    playTimeSeen = playTimeMs;
}
