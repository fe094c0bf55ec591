#include "StreamerPlayLogic.h"

#include "VexaPlayLogicChangePlayModeArgs.h"

#include <CMError.h>
#include <VexaLog.h>

namespace {

log4cplus::Logger logger()
{
    return log4cplus::Logger::getInstance("PlayLogic");
}

} // namespace

StreamerPlayLogic::StreamerPlayLogic(CMNodes* nodes, const CMPath& path) : CMNode(path), PlayLogicBase(path)
{
    setNodes(nodes);
}

StreamerPlayLogic::~StreamerPlayLogic() = default;

void StreamerPlayLogic::play(const CMSetDataRequest& request)
{
    VexaPlayLogicPlayArgs args(request.value().toHash());
    args.remove(VexaPlayLogicRequest::Command());
    playInternal(request, args);
}

void StreamerPlayLogic::stop(const CMSetDataRequest& request)
{
    stopInternal(request);
}

void StreamerPlayLogic::pause(const CMSetDataRequest& request)
{
    pauseInternal(request);
}

void StreamerPlayLogic::previous(const CMSetDataRequest& request)
{
    previousInternal(request);
}

void StreamerPlayLogic::next(const CMSetDataRequest& request)
{
    nextInternal(request);
}

void StreamerPlayLogic::like(const CMSetDataRequest& request)
{
    likeInternal(request);
}

void StreamerPlayLogic::dislike(const CMSetDataRequest& request)
{
    dislikeInternal(request);
}

void StreamerPlayLogic::seekTime(const CMSetDataRequest& request)
{
    seekTimeInternal(request);
}

void StreamerPlayLogic::seekBytes(const CMSetDataRequest& request)
{
    seekBytesInternal(request);
}

void StreamerPlayLogic::setCurrentTrack(const CMSetDataRequest& request)
{
    setCurrentTrackInternal(request);
}

void StreamerPlayLogic::changePlayMode(const CMSetDataRequest& request)
{
    // Play logics read the mode without checking it: only a known one reaches them.
    const VexaPlayLogicChangePlayModeArgs args(request.value().toHash());
    bool ok = false;
    const int mode = VexaPlayerPlayMode::fromVariant(args.value(VexaPlayLogicChangePlayModeArgs::PlayMode()), &ok);
    if (!ok || !VexaPlayerPlayMode::isValid(mode)) {
        request.reply().setError(CMError(CMError::BadRequestName(), QStringLiteral("Invalid play mode"),
                                         TrString(QStringLiteral("No such play mode: ")
                                                  + args.value(VexaPlayLogicChangePlayModeArgs::PlayMode()).toString())));
        return;
    }
    changePlayModeInternal(request);
}

VexaPlayLogicPlayModesSupported StreamerPlayLogic::playModesSupported()
{
    return VexaPlayLogicPlayModesSupported();
}

void StreamerPlayLogic::playInternal(const CMSetDataRequest& request, const VexaPlayLogicPlayArgs&)
{
    refuseUnsupported(request, QStringLiteral("play"));
}

void StreamerPlayLogic::stopInternal(const CMSetDataRequest& request)
{
    playerInstance()->stopPlayLogic(playLogicPath(), VexaPlayLogicStopReason::Stopped);
    request.reply().setFinished();
}

void StreamerPlayLogic::pauseInternal(const CMSetDataRequest& request)
{
    request.reply().setFinished();
}

void StreamerPlayLogic::previousInternal(const CMSetDataRequest& request)
{
    refuseUnsupported(request, QStringLiteral("previous"));
}

void StreamerPlayLogic::nextInternal(const CMSetDataRequest& request)
{
    refuseUnsupported(request, QStringLiteral("next"));
}

void StreamerPlayLogic::seekTimeInternal(const CMSetDataRequest& request)
{
    refuseUnsupported(request, QStringLiteral("seekTime"));
}

void StreamerPlayLogic::seekBytesInternal(const CMSetDataRequest& request)
{
    refuseUnsupported(request, QStringLiteral("seekBytes"));
}

void StreamerPlayLogic::likeInternal(const CMSetDataRequest& request)
{
    refuseUnsupported(request, QStringLiteral("like"));
}

void StreamerPlayLogic::dislikeInternal(const CMSetDataRequest& request)
{
    refuseUnsupported(request, QStringLiteral("dislike"));
}

void StreamerPlayLogic::setCurrentTrackInternal(const CMSetDataRequest& request)
{
    refuseUnsupported(request, QStringLiteral("setCurrentTrack"));
}

void StreamerPlayLogic::changePlayModeInternal(const CMSetDataRequest& request)
{
    setPlayMode(VexaPlayLogicChangePlayModeArgs(request.value().toHash()).playMode());
    request.reply().setFinished();
}

void StreamerPlayLogic::prepareNextMedia()
{
    sendNoNextMediaCommand();
}

VexaRoles StreamerPlayLogic::translateTrackRoles(const VexaRoles& roles)
{
    return roles;
}

VexaPlayLogicData StreamerPlayLogic::translatePlayLogicStatus(const VexaPlayLogicData& data)
{
    return data;
}

VexaPlayLogicData StreamerPlayLogic::mediaPlaybackStarted(const VexaRoles&, const VexaRoles& newRoles)
{
    VexaPlayLogicData started = data();
    started.setTrackRoles(translateTrackRoles(newRoles));
    started.remove(VexaPlayLogicData::Error());
    started.remove(VexaPlayLogicData::StreamerError());
    return started;
}

void StreamerPlayLogic::tryResumePlayback()
{
    playbackEnded();
}

void StreamerPlayLogic::playbackStopped()
{
}

void StreamerPlayLogic::playbackEnded()
{
    playerInstance()->stopPlayLogic(playLogicPath(), VexaPlayLogicStopReason::EndOfContent);
}

bool StreamerPlayLogic::handleAlternate(const CMSetDataRequest&)
{
    return false;
}

void StreamerPlayLogic::playTimeChangedInternal(qint64)
{
}

bool StreamerPlayLogic::setDataRequest(const CMSetDataRequest& request)
{
    const VexaPlayLogicRequest value(request.value().toHash());
    VEXA_LOG_ENTER(TRACE, logger(), playLogicPath() << " " << value);
    if (value.isCommand() && dispatchCommand(request, value))
        return true;
    if (value.isCallback() && dispatchCallback(request, value))
        return true;
    if (handleAlternate(request))
        return true;
    LOG4CPLUS_DEBUG(logger(), playLogicPath() << " does not take " << request.value());
    return false;
}

bool StreamerPlayLogic::sendPlayCommand(const VexaRoles& roles, const QHash<QString, QVariant>& options)
{
    return playerInstance()->play(playLogicPath(), roles, options);
}

bool StreamerPlayLogic::sendSetNextMediaCommand(const VexaRoles& roles, const QHash<QString, QVariant>& options)
{
    return playerInstance()->setNextMedia(playLogicPath(), roles, options);
}

bool StreamerPlayLogic::sendNoNextMediaCommand()
{
    return playerInstance()->clearNextMedia(playLogicPath());
}

void StreamerPlayLogic::refuseUnsupported(const CMSetDataRequest& request, const QString& what)
{
    request.reply().setError(CMError(CMError::DefaultName(), QStringLiteral("Not supported"),
                                     TrString(playLogicPath().toEncoded() + QStringLiteral(" does not support ") + what)));
}

bool StreamerPlayLogic::dispatchCommand(const CMSetDataRequest& request, const VexaPlayLogicRequest& value)
{
    bool ok = false;
    const VexaPlayLogicCommand::Enum command = value.command(&ok);
    if (!ok)
        return false;
    switch (command) {
    case VexaPlayLogicCommand::Play:
        play(request);
        return true;
    case VexaPlayLogicCommand::Stop:
        stop(request);
        return true;
    case VexaPlayLogicCommand::Pause:
        pause(request);
        return true;
    case VexaPlayLogicCommand::Previous:
        previous(request);
        return true;
    case VexaPlayLogicCommand::Next:
        next(request);
        return true;
    case VexaPlayLogicCommand::Like:
        like(request);
        return true;
    case VexaPlayLogicCommand::Dislike:
        dislike(request);
        return true;
    case VexaPlayLogicCommand::SeekTime:
        seekTime(request);
        return true;
    case VexaPlayLogicCommand::SeekBytes:
        seekBytes(request);
        return true;
    case VexaPlayLogicCommand::SetCurrentTrack:
        setCurrentTrack(request);
        return true;
    case VexaPlayLogicCommand::ChangePlayMode:
        changePlayMode(request);
        return true;
    }
    return false;
}

bool StreamerPlayLogic::dispatchCallback(const CMSetDataRequest& request, const VexaPlayLogicRequest& value)
{
    bool ok = false;
    const VexaPlayLogicCallback::Enum callback = value.callback(&ok);
    if (!ok)
        return false;
    switch (callback) {
    case VexaPlayLogicCallback::MediaPlaybackStarted: {
        // The new track is part of the data before the play logic looks at it.
        VexaPlayLogicData current = data();
        current.setTrackRoles(translateTrackRoles(value.newRoles()));
        storeData(current);
        setData(translatePlayLogicStatus(mediaPlaybackStarted(value.oldRoles(), value.newRoles())));
        break;
    }
    case VexaPlayLogicCallback::PrepareNextMedia:
        prepareNextMedia();
        break;
    case VexaPlayLogicCallback::TryResumePlayback: {
        // The player already knows the error: it is stored, not published back.
        VexaPlayLogicData current = data();
        current.setStreamerError(value.streamerError());
        storeData(current);
        tryResumePlayback();
        break;
    }
    case VexaPlayLogicCallback::PlaybackStopped:
        playbackStopped();
        break;
    case VexaPlayLogicCallback::PlaybackEnded:
        playbackEnded();
        break;
    case VexaPlayLogicCallback::PlayTimeChanged:
        playTimeChangedInternal(value.playTimeMs());
        break;
    default:
        return false;
    }
    request.reply().setFinished();
    return true;
}
