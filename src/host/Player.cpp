#include "Player.h"

#include <CMRootWorker.h>
#include <PlayLogicInterface.h>
#include <VexaLog.h>
#include <VexaPlayLogicChangePlayModeArgs.h>
#include <VexaPlayLogicPlayArgs.h>

namespace {

log4cplus::Logger logger()
{
    return log4cplus::Logger::getInstance("Player");
}

CMError stateError(const QString& message)
{
    return CMError(CMError::DefaultName(), QStringLiteral("Player"), TrString(message));
}

// The player-side controls a play logic has switched off.
bool controlRefused(const VexaPlayLogicControls& controls, const QString& control)
{
    return controls.contains(control) && !controls.value(control).toBool();
}

} // namespace

CMPath Player::controlPath()
{
    return CMPath(prefix() + QStringLiteral(":/control"));
}

CMPath Player::statusPath()
{
    return CMPath(prefix() + QStringLiteral(":/status"));
}

CMPath Player::positionPath()
{
    return CMPath(prefix() + QStringLiteral(":/position"));
}

CMPath Player::playModePath()
{
    return CMPath(prefix() + QStringLiteral(":/playMode"));
}

CMPath Player::volumePath()
{
    return CMPath(prefix() + QStringLiteral(":/volume"));
}

CMPath Player::volumeSettingPath()
{
    return CMPath(QStringLiteral("settings:/player/volume"));
}

Player::Player() : m_preparedSerial(std::make_shared<std::atomic<quint64>>(0))
{
    const VexaValue stored(CMRoot()->getValue(volumeSettingPath()).toHash());
    if (stored.type() == VexaValue::I32() && stored.i32_() >= 0 && stored.i32_() <= 100)
        m_volume = stored.i32_();
    m_announcedStatus = statusLocked();
    m_announcedPlayMode = playModeValueLocked();
    m_positionAnnouncedAt = RealClock::now();
}

Player::~Player()
{
    if (PlayLogicInterface::playerInstance() == this)
        PlayLogicInterface::setPlayerInstance(nullptr);
}

// --- VexaPlayer -------------------------------------------------------------

bool Player::playContainer(const VexaRoles& containerRoles, const VexaRoles& trackRoles, int index,
                           qint64 startPositionMs, bool paused)
{
    const CMReply<QVariant> reply;
    startContainer(containerRoles, trackRoles, index, startPositionMs, paused, reply);
    // Refused at once, or handed to the play logic, whose answer comes later.
    return !(reply.isFinished() && reply.hasError());
}

bool Player::stop(VexaPlayLogicStopReason::Enum reason)
{
    const Lock lock(m_mutex);
    return stopLocked(reason);
}

bool Player::stopPlayLogic(const CMPath& playLogicPath, VexaPlayLogicStopReason::Enum reason)
{
    const Lock lock(m_mutex);
    if (!isCurrentLocked(playLogicPath))
        return false;
    return stopLocked(reason);
}

bool Player::play(const CMPath& playLogicPath, const VexaRoles& trackRoles, const QVariantHash&)
{
    const Lock lock(m_mutex);
    if (trackRoles.isEmpty()) {
        LOG4CPLUS_WARN(logger(), playLogicPath << " asked to play no track");
        return false;
    }
    // Playback belongs to the play logic that playContainer named; another
    // may start only while none has been named.
    if (!m_playLogicPath.isEmpty() && !isCurrentLocked(playLogicPath)) {
        LOG4CPLUS_WARN(logger(), playLogicPath << " may not play: " << m_playLogicPath << " plays");
        return false;
    }
    if (m_playLogicPath.isEmpty())
        m_playLogicPath = playLogicPath;
    const qint64 startPositionMs = m_startPending ? m_pendingPositionMs : 0;
    const bool paused = m_startPending && m_pendingPaused;
    if (m_startPending)
        m_container = m_pendingContainer;
    m_startPending = false;
    startTrackLocked(trackRoles, startPositionMs, paused, false);
    return true;
}

bool Player::setNextMedia(const CMPath& playLogicPath, const VexaRoles& trackRoles, const QVariantHash&)
{
    if (trackRoles.isEmpty())
        return clearNextMedia(playLogicPath);
    const Lock lock(m_mutex);
    if (!isCurrentLocked(playLogicPath) || m_state == State::Stopped)
        return false;
    m_hasNext = true;
    m_nextTrack = trackRoles;
    m_nextAnswered = true;
    m_wake.notify_all();
    return true;
}

bool Player::clearNextMedia(const CMPath& playLogicPath)
{
    const Lock lock(m_mutex);
    if (!isCurrentLocked(playLogicPath) || m_state == State::Stopped)
        return false;
    m_hasNext = false;
    m_nextTrack = VexaRoles();
    m_nextAnswered = true;
    m_wake.notify_all();
    return true;
}

void Player::publishData(const CMPath& playLogicPath, const VexaPlayLogicData& data)
{
    const Lock lock(m_mutex);
    m_data.insert(playLogicPath.base(), data);
    if (!isCurrentLocked(playLogicPath))
        return;
    // The play logic owns how its running track is shown (its sequence
    // number follows edits of the list); roles of a track that no longer
    // plays, published before the player moved on, are not taken.
    const VexaRoles published = data.trackRoles();
    if (m_state != State::Stopped && !published.isEmpty() && isSameTrack(published, m_track))
        m_track = published;
    announceStatusLocked();
}

void Player::publishPlayMode(const CMPath& playLogicPath, VexaPlayerPlayMode::Enum mode)
{
    const Lock lock(m_mutex);
    m_playModes.insert(playLogicPath.base(), mode);
    if (isCurrentLocked(playLogicPath)) {
        announcePlayModeLocked();
        announceStatusLocked();
    }
}

qint64 Player::positionMs() const
{
    const Lock lock(m_mutex);
    return positionLocked();
}

// --- Controls -----------------------------------------------------------------

void Player::startContainer(const VexaRoles& containerRoles, const VexaRoles& trackRoles, int index,
                            qint64 startPositionMs, bool paused, const CMReply<QVariant>& reply)
{
    const CMPath playLogicPath = containerRoles.mediaData().metaData().playLogicPath();
    if (playLogicPath.prefix().isEmpty()) {
        reply.setError(CMError(CMError::BadRequestName(), QStringLiteral("Invalid container"),
                               TrString(QStringLiteral("The container names no play logic (mediaData.metaData.playLogicPath)"))));
        return;
    }
    // What plays goes on when the container names a module that is not there.
    if (!CMRoot()->worker(playLogicPath.prefix())) {
        reply.setError(CMAbstractWorker::invalidPathError(playLogicPath));
        return;
    }
    const Lock lock(m_mutex);
    if (m_state != State::Stopped && !isCurrentLocked(playLogicPath)) {
        // Another play logic takes over: the one playing hears that it was stopped.
        const CMPath previous = m_playLogicPath;
        stopLocked(VexaPlayLogicStopReason::Stopped);
        sendLocked(previous, VexaPlayLogicRequest::callback(VexaPlayLogicCallback::PlaybackStopped));
    }
    LOG4CPLUS_INFO(logger(), "Container " << containerRoles.title() << " at " << index << " goes to " << playLogicPath);
    if (!isCurrentLocked(playLogicPath))
        m_container = VexaRoles();
    m_playLogicPath = playLogicPath;
    m_error = VexaError();
    m_startPending = true;
    m_pendingContainer = containerRoles;
    m_pendingPositionMs = qMax<qint64>(0, startPositionMs);
    m_pendingPaused = paused;

    VexaPlayLogicPlayArgs args;
    args.setMediaRoles(containerRoles);
    args.setTrackRoles(trackRoles);
    args.setIndex(index);
    args.setType(1);
    VexaPlayLogicRequest request = VexaPlayLogicRequest::command(VexaPlayLogicCommand::Play);
    for (const QString& key : args.keys())
        request.insert(key, args.value(key));
    sendLocked(playLogicPath, request, reply);
    announcePlayModeLocked();
    announceStatusLocked();
}

void Player::pause(const CMReply<QVariant>& reply)
{
    const Lock lock(m_mutex);
    if (m_state != State::Playing) {
        reply.setError(stateError(QStringLiteral("Nothing is playing")));
        return;
    }
    if (controlRefused(m_data.value(m_playLogicPath.base()).controls(), VexaPlayLogicControls::Pause())) {
        reply.setError(stateError(QStringLiteral("This track cannot be paused")));
        return;
    }
    pauseMediaLocked();
    m_state = State::Paused;
    announceLocked();
    reply.setData(QVariant());
}

void Player::resume(const CMReply<QVariant>& reply)
{
    const Lock lock(m_mutex);
    if (m_state != State::Paused) {
        reply.setError(stateError(QStringLiteral("Nothing is paused")));
        return;
    }
    resumeMediaLocked();
    m_state = State::Playing;
    announceLocked();
    reply.setData(QVariant());
}

void Player::seek(qint64 positionMs, const CMReply<QVariant>& reply)
{
    const Lock lock(m_mutex);
    if (m_state == State::Stopped) {
        reply.setError(stateError(QStringLiteral("Nothing is playing")));
        return;
    }
    if (controlRefused(m_data.value(m_playLogicPath.base()).controls(), VexaPlayLogicControls::SeekTime())) {
        reply.setError(stateError(QStringLiteral("This track cannot be sought")));
        return;
    }
    // A stream of unknown length is sought blindly; its end comes as it comes.
    if (positionMs < 0 || (m_durationMs > 0 && positionMs > m_durationMs)) {
        reply.setError(CMError(CMError::BadRequestName(), QStringLiteral("Invalid position"),
                               TrString(QStringLiteral("positionMs must lie between 0 and %1").arg(m_durationMs))));
        return;
    }
    seekMediaLocked(positionMs);
    announceLocked();
    reply.setData(QVariant());
}

void Player::sendCommand(VexaPlayLogicCommand::Enum command, const CMReply<QVariant>& reply)
{
    const Lock lock(m_mutex);
    if (command == VexaPlayLogicCommand::Stop) {
        // The user's stop takes effect even when the play logic is slow or gone.
        stopLocked(VexaPlayLogicStopReason::Stopped);
        if (m_playLogicPath.isEmpty()) {
            reply.setData(QVariant());
            return;
        }
    } else if (m_playLogicPath.isEmpty()) {
        reply.setError(stateError(QStringLiteral("Nothing has been played")));
        return;
    }
    sendLocked(m_playLogicPath, VexaPlayLogicRequest::command(command), reply);
}

void Player::changePlayMode(VexaPlayerPlayMode::Enum mode, const CMReply<QVariant>& reply)
{
    const Lock lock(m_mutex);
    if (m_playLogicPath.isEmpty()) {
        reply.setError(stateError(QStringLiteral("No play logic to change the play mode of")));
        return;
    }
    VexaPlayLogicChangePlayModeArgs args;
    args.setPlayMode(mode);
    VexaPlayLogicRequest request = VexaPlayLogicRequest::command(VexaPlayLogicCommand::ChangePlayMode);
    request.insert(VexaPlayLogicChangePlayModeArgs::PlayMode(), args.value(VexaPlayLogicChangePlayModeArgs::PlayMode()));
    sendLocked(m_playLogicPath, request, reply);
}

QVariantHash Player::status() const
{
    const Lock lock(m_mutex);
    return statusLocked();
}

VexaValue Player::positionValue() const
{
    VexaValue value;
    value.setI64_(positionMs());
    return value;
}

VexaValue Player::playModeValue() const
{
    const Lock lock(m_mutex);
    return playModeValueLocked();
}

void Player::setVolume(int volume, const CMReply<QVariant>& reply)
{
    const Lock lock(m_mutex);
    if (volume != m_volume) {
        VexaValue old;
        old.setI32_(m_volume);
        m_volume = volume;
        volumeChangedLocked(volume);
        // Kept for the next start; a host without settings plays on without.
        CMRoot()->setValue(volumeSettingPath(), volumeValueLocked(), CMReply<QVariant>());
        emit CMRoot()->valueChanged(volumePath(), volumeValueLocked(), old);
    }
    reply.setData(QVariant());
}

VexaValue Player::volumeValue() const
{
    const Lock lock(m_mutex);
    return volumeValueLocked();
}

VexaValue Player::volumeValueLocked() const
{
    VexaValue value;
    value.setI32_(m_volume);
    return value;
}
