#include "Player.h"

#include <CMRootWorker.h>
#include <PlayLogicInterface.h>
#include <VexaLog.h>
#include <VexaPlayLogicChangePlayModeArgs.h>
#include <VexaPlayLogicPlayArgs.h>

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace {

log4cplus::Logger logger()
{
    return log4cplus::Logger::getInstance("Player");
}

CMError stateError(const QString& message)
{
    return CMError(CMError::DefaultName(), QStringLiteral("Player"), TrString(message));
}

// A JSON null where no value is; the status keeps all its keys.
QVariant orNull(const VexaHash& hash)
{
    return hash.isEmpty() ? QVariant() : hash.toVariant();
}

// The player-side controls a play logic has switched off.
bool controlRefused(const VexaPlayLogicControls& controls, const QString& control)
{
    return controls.contains(control) && !controls.value(control).toBool();
}

constexpr std::chrono::milliseconds kPositionInterval(1000);
// While the end of a track waits for the play logic, how often it looks
// whether the request for the next media has been answered.
constexpr std::chrono::milliseconds kAnswerPoll(5);

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

Player::Player(double timeScale)
    : m_clock(timeScale), m_preparedSerial(std::make_shared<std::atomic<quint64>>(0))
{
    m_announcedStatus = statusLocked();
    m_announcedPlayMode = playModeValueLocked();
    m_positionAnnouncedAt = RealClock::now();
    m_thread = std::thread([this]() { run(); });
    LOG4CPLUS_INFO(logger(), "Player runs at " << m_clock.scale() << " times real time");
}

Player::~Player()
{
    {
        const Lock lock(m_mutex);
        m_quit = true;
    }
    m_wake.notify_all();
    m_thread.join();
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
    startTrackLocked(trackRoles, m_clock.nowMs(), startPositionMs, paused);
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
    m_anchorPositionMs = positionLocked();
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
    m_anchorVirtualMs = m_clock.nowMs();
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
    if (positionMs < 0 || positionMs > m_durationMs) {
        reply.setError(CMError(CMError::BadRequestName(), QStringLiteral("Invalid position"),
                               TrString(QStringLiteral("positionMs must lie between 0 and %1").arg(m_durationMs))));
        return;
    }
    m_anchorPositionMs = positionMs;
    m_anchorVirtualMs = m_clock.nowMs();
    m_waitingAtEnd = false;
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

// --- The player's thread --------------------------------------------------------

void Player::run()
{
    Lock lock(m_mutex);
    while (!m_quit) {
        processDueLocked();
        const RealClock::time_point due = nextDueLocked();
        if (due == RealClock::time_point::max())
            m_wake.wait(lock);
        else
            m_wake.wait_until(lock, due);
    }
}

void Player::processDueLocked()
{
    if (m_state != State::Playing)
        return;
    const qint64 position = positionLocked();
    if (!m_prepareSent && position >= prepareAtLocked())
        sendPrepareLocked();
    if (position >= m_durationMs) {
        if (m_hasNext) {
            handOverLocked();
        } else if (nextAnsweredLocked() || (m_waitingAtEnd && RealClock::now() >= m_endWaitDeadline)) {
            endPlaybackLocked();
        } else if (!m_waitingAtEnd) {
            m_waitingAtEnd = true;
            m_endWaitDeadline = RealClock::now() + std::chrono::milliseconds(AnswerWaitRealMs);
            LOG4CPLUS_DEBUG(logger(), "End of track waits for " << m_playLogicPath << " to name the next media");
        }
    }
    if (m_state == State::Playing && RealClock::now() >= m_positionAnnouncedAt + kPositionInterval)
        announcePositionLocked();
}

Player::RealClock::time_point Player::nextDueLocked() const
{
    if (m_state != State::Playing)
        return RealClock::time_point::max();
    RealClock::time_point due = m_positionAnnouncedAt + kPositionInterval;
    if (!m_prepareSent)
        due = std::min(due, realTimeAtPositionLocked(prepareAtLocked()));
    if (m_waitingAtEnd)
        due = std::min({due, m_endWaitDeadline, RealClock::now() + kAnswerPoll});
    else
        due = std::min(due, realTimeAtPositionLocked(m_durationMs));
    return due;
}

Player::RealClock::time_point Player::realTimeAtPositionLocked(qint64 positionMs) const
{
    return m_clock.realTimeAt(m_anchorVirtualMs + (positionMs - m_anchorPositionMs));
}

// --- State, under the lock ----------------------------------------------------------

qint64 Player::positionLocked() const
{
    switch (m_state) {
    case State::Stopped:
        return 0;
    case State::Paused:
        return m_anchorPositionMs;
    case State::Playing:
        break;
    }
    return qMin(m_durationMs, m_anchorPositionMs + (m_clock.nowMs() - m_anchorVirtualMs));
}

qint64 Player::prepareAtLocked() const
{
    return qMax<qint64>(0, m_durationMs - PrepareAheadMs);
}

bool Player::isCurrentLocked(const CMPath& playLogicPath) const
{
    return !m_playLogicPath.isEmpty() && playLogicPath.base() == m_playLogicPath.base();
}

bool Player::nextAnsweredLocked() const
{
    return m_nextAnswered || (m_prepareSent && m_preparedSerial->load() == m_trackSerial);
}

void Player::startTrackLocked(const VexaRoles& trackRoles, qint64 anchorVirtualMs, qint64 startPositionMs, bool paused)
{
    const VexaRoles oldRoles = m_state == State::Stopped ? VexaRoles() : m_track;
    ++m_trackSerial;
    forgetNextLocked();
    m_track = trackRoles;
    const VexaError error = startErrorOf(trackRoles);
    if (!error.isEmpty()) {
        LOG4CPLUS_WARN(logger(), "Track " << trackRoles.title() << " fails to start: " << error.message());
        m_state = State::Stopped;
        m_durationMs = 0;
        m_anchorPositionMs = 0;
        m_error = error;
        VexaPlayLogicRequest request = VexaPlayLogicRequest::callback(VexaPlayLogicCallback::TryResumePlayback);
        request.setStreamerError(error);
        sendLocked(m_playLogicPath, request);
    } else {
        m_error = VexaError();
        m_durationMs = durationOf(trackRoles);
        m_anchorPositionMs = qBound<qint64>(0, startPositionMs, m_durationMs);
        m_anchorVirtualMs = anchorVirtualMs;
        m_state = paused ? State::Paused : State::Playing;
        LOG4CPLUS_INFO(logger(), "Track " << trackRoles.title() << " starts (" << m_durationMs << " ms)");
        VexaPlayLogicRequest request = VexaPlayLogicRequest::callback(VexaPlayLogicCallback::MediaPlaybackStarted);
        request.setOldRoles(oldRoles);
        request.setNewRoles(trackRoles);
        sendLocked(m_playLogicPath, request);
    }
    announceLocked();
}

void Player::handOverLocked()
{
    // Without a gap: the next track starts at the virtual moment the current
    // one ended, unless the end had to wait for the play logic.
    const qint64 endVirtualMs =
        m_waitingAtEnd ? m_clock.nowMs() : m_anchorVirtualMs + (m_durationMs - m_anchorPositionMs);
    const VexaRoles next = m_nextTrack;
    startTrackLocked(next, endVirtualMs, 0, false);
}

void Player::endPlaybackLocked()
{
    LOG4CPLUS_INFO(logger(), "Playback of " << m_playLogicPath << " ended");
    clearTrackLocked();
    sendLocked(m_playLogicPath, VexaPlayLogicRequest::callback(VexaPlayLogicCallback::PlaybackEnded));
}

bool Player::stopLocked(VexaPlayLogicStopReason::Enum reason)
{
    m_startPending = false;
    const bool wasRunning = m_state != State::Stopped;
    // A failed track stays in the status, with its error, until playback is
    // stopped; an error stays until the user stops or something starts.
    const bool clearError = reason == VexaPlayLogicStopReason::Stopped && !m_error.isEmpty();
    if (!wasRunning && m_track.isEmpty() && !clearError)
        return false;
    LOG4CPLUS_INFO(logger(), "Stopped (" << VexaPlayLogicStopReason::toString(reason) << ")");
    if (clearError)
        m_error = VexaError();
    clearTrackLocked();
    return wasRunning;
}

void Player::clearTrackLocked()
{
    m_state = State::Stopped;
    m_track = VexaRoles();
    m_durationMs = 0;
    ++m_trackSerial;
    forgetNextLocked();
    announceLocked();
}

void Player::forgetNextLocked()
{
    m_prepareSent = false;
    m_nextAnswered = false;
    m_hasNext = false;
    m_nextTrack = VexaRoles();
    m_waitingAtEnd = false;
}

void Player::sendPrepareLocked()
{
    m_prepareSent = true;
    const CMReply<QVariant> reply;
    // The play logic has answered once its prepareNextMedia returned, even
    // when it announced nothing; a failed request counts as no next media.
    const std::shared_ptr<std::atomic<quint64>> prepared = m_preparedSerial;
    const quint64 serial = m_trackSerial;
    reply.onFinished([prepared, serial]() { prepared->store(serial); });
    sendLocked(m_playLogicPath, VexaPlayLogicRequest::callback(VexaPlayLogicCallback::PrepareNextMedia), reply);
}

void Player::sendLocked(const CMPath& playLogicPath, const VexaPlayLogicRequest& request, const CMReply<QVariant>& reply)
{
    const CMReply<QVariant> watched = reply;
    const QString what = request.value(request.isCommand() ? VexaPlayLogicRequest::Command() : VexaPlayLogicRequest::Callback()).toString();
    watched.onFinished([watched, playLogicPath, what]() {
        if (watched.hasError())
            LOG4CPLUS_WARN(logger(), playLogicPath << " answered " << what << " with " << watched.error());
    });
    LOG4CPLUS_DEBUG(logger(), "To " << playLogicPath << ": " << what);
    CMRoot()->invoke(playLogicPath, request.toVariant(), reply);
}

// --- Announcements -----------------------------------------------------------------

QVariantHash Player::statusLocked() const
{
    const VexaPlayLogicData data = m_data.value(m_playLogicPath.base());
    const VexaError error = m_error.isEmpty() ? data.error() : m_error;
    return QVariantHash{
        {QStringLiteral("state"), stateName(m_state)},
        {QStringLiteral("track"), orNull(m_track)},
        {QStringLiteral("container"), orNull(m_container)},
        {QStringLiteral("playLogicPath"), m_playLogicPath.isEmpty() ? QVariant() : QVariant(m_playLogicPath.toEncoded())},
        {QStringLiteral("controls"), data.controls().toVariant()},
        {QStringLiteral("durationMs"), m_durationMs},
        {QStringLiteral("playMode"), VexaPlayerPlayMode::toString(m_playModes.value(m_playLogicPath.base(), VexaPlayerPlayMode::Normal))},
        {QStringLiteral("error"), orNull(error)},
    };
}

VexaValue Player::playModeValueLocked() const
{
    VexaValue value;
    value.setPlayerPlayMode(m_playModes.value(m_playLogicPath.base(), VexaPlayerPlayMode::Normal));
    return value;
}

void Player::announceStatusLocked()
{
    const QVariantHash status = statusLocked();
    if (status == m_announcedStatus)
        return;
    const VexaValue old(m_announcedStatus);
    m_announcedStatus = status;
    emit CMRoot()->valueChanged(statusPath(), VexaValue(status), old);
}

void Player::announcePositionLocked()
{
    VexaValue position;
    position.setI64_(positionLocked());
    VexaValue old;
    old.setI64_(m_announcedPositionMs);
    m_announcedPositionMs = position.i64_();
    m_positionAnnouncedAt = RealClock::now();
    emit CMRoot()->valueChanged(positionPath(), position, old);
}

void Player::announcePlayModeLocked()
{
    const VexaValue mode = playModeValueLocked();
    if (mode == m_announcedPlayMode)
        return;
    const VexaValue old = m_announcedPlayMode;
    m_announcedPlayMode = mode;
    emit CMRoot()->valueChanged(playModePath(), mode, old);
}

void Player::announceLocked()
{
    announcePositionLocked();
    announcePlayModeLocked();
    announceStatusLocked();
    // The player's thread works out its next wake-up anew.
    m_wake.notify_all();
}

// --- Tracks ------------------------------------------------------------------------

bool Player::isSameTrack(const VexaRoles& a, const VexaRoles& b)
{
    VexaRoles withoutValueA = a;
    VexaRoles withoutValueB = b;
    withoutValueA.remove(VexaRoles::Value());
    withoutValueB.remove(VexaRoles::Value());
    return withoutValueA == withoutValueB;
}

qint64 Player::durationOf(const VexaRoles& trackRoles)
{
    const QList<VexaMediaResource> resources = trackRoles.mediaData().resources();
    if (resources.isEmpty())
        return DefaultDurationMs;
    bool ok = false;
    const double seconds = resources.first().value(VexaMediaResource::Duration()).toDouble(&ok);
    if (!ok || !(seconds > 0) || seconds > 1e9)
        return DefaultDurationMs;
    return qint64(std::llround(seconds * 1000.0));
}

VexaError Player::startErrorOf(const VexaRoles& trackRoles)
{
    const QList<VexaMediaResource> resources = trackRoles.mediaData().resources();
    const QString uri = resources.isEmpty() ? QString() : resources.first().uri();
    if (!uri.startsWith(QLatin1String("error:")))
        return VexaError();
    // "error:404" fails with code 404; any other "error:" uri with MediaUnavailableCode.
    const QRegularExpressionMatch match = QRegularExpression(QStringLiteral("^error:(\\d{1,9})")).match(uri);
    const int code = match.hasMatch() ? match.captured(1).toInt() : 0;
    VexaError error;
    error.setCode(code > 0 ? code : MediaUnavailableCode);
    error.setMessage(QStringLiteral("Cannot play ") + uri);
    return error;
}

QString Player::stateName(State state)
{
    switch (state) {
    case State::Playing:
        return QStringLiteral("playing");
    case State::Paused:
        return QStringLiteral("paused");
    case State::Stopped:
        break;
    }
    return QStringLiteral("stopped");
}
