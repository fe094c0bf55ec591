// The course of a track through the player, whatever its backend: start,
// fail, hand over, end and stop; the requests to the play logic that go with
// them; and the announcements of what changed.

#include "Player.h"

#include <CMRootWorker.h>
#include <VexaLog.h>

#include <QRegularExpression>

#include <cmath>

namespace {

log4cplus::Logger logger()
{
    return log4cplus::Logger::getInstance("Player");
}

// A JSON null where no value is; the status keeps all its keys.
QVariant orNull(const VexaHash& hash)
{
    return hash.isEmpty() ? QVariant() : hash.toVariant();
}

constexpr std::chrono::milliseconds kPositionInterval(1000);
// While a track's end waits for the play logic, how often it looks whether
// the request for the next media has been answered.
constexpr std::chrono::milliseconds kAnswerPoll(5);

} // namespace

// --- State, under the lock ----------------------------------------------------------

qint64 Player::positionLocked() const
{
    return m_state == State::Stopped ? 0 : mediaPositionLocked();
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

void Player::startTrackLocked(const VexaRoles& trackRoles, qint64 startPositionMs, bool paused, bool followsOn)
{
    const VexaError error = startErrorOf(trackRoles);
    if (!error.isEmpty()) {
        failTrackLocked(trackRoles, error);
        return;
    }
    m_startedFrom = m_state == State::Stopped ? VexaRoles() : m_track;
    ++m_trackSerial;
    forgetNextLocked();
    m_track = trackRoles;
    m_error = VexaError();
    m_durationMs = rolesDurationMs(trackRoles);
    m_durationFromRoles = m_durationMs > 0;
    m_mediaStarted = false;
    m_state = paused ? State::Paused : State::Playing;
    LOG4CPLUS_INFO(logger(), "Track " << trackRoles.title() << " starts (" << m_durationMs << " ms)");
    startMediaLocked(uriOf(trackRoles), m_durationMs > 0 ? qBound<qint64>(0, startPositionMs, m_durationMs) : qMax<qint64>(0, startPositionMs),
                     paused, followsOn);
    announceLocked();
}

void Player::mediaStartedLocked()
{
    if (m_mediaStarted || m_state == State::Stopped)
        return;
    m_mediaStarted = true;
    VexaPlayLogicRequest request = VexaPlayLogicRequest::callback(VexaPlayLogicCallback::MediaPlaybackStarted);
    request.setOldRoles(m_startedFrom);
    request.setNewRoles(m_track);
    sendLocked(m_playLogicPath, request);
    m_startedFrom = VexaRoles();
    announceStatusLocked();
    m_wake.notify_all();
}

void Player::failTrackLocked(const VexaRoles& roles, const VexaError& error)
{
    LOG4CPLUS_WARN(logger(), "Track " << roles.title() << " fails: " << error.message());
    stopMediaLocked();
    ++m_trackSerial;
    forgetNextLocked();
    m_track = roles;
    m_state = State::Stopped;
    m_durationMs = 0;
    m_error = error;
    VexaPlayLogicRequest request = VexaPlayLogicRequest::callback(VexaPlayLogicCallback::TryResumePlayback);
    request.setStreamerError(error);
    sendLocked(m_playLogicPath, request);
    announceLocked();
}

void Player::handOverLocked()
{
    const VexaRoles next = m_nextTrack;
    startTrackLocked(next, 0, false, true);
}

void Player::mediaEndedLocked()
{
    if (m_state == State::Stopped)
        return;
    if (m_hasNext) {
        const VexaRoles next = m_nextTrack;
        startTrackLocked(next, 0, false, false);
    } else {
        endPlaybackLocked();
    }
}

qint64 Player::preparePositionLocked() const
{
    if (m_state == State::Stopped || !m_mediaStarted || m_prepareSent || m_durationMs <= 0)
        return -1;
    return prepareAtLocked();
}

void Player::prepareIfDueLocked(qint64 positionMs)
{
    const qint64 due = preparePositionLocked();
    if (due >= 0 && positionMs >= due)
        sendPrepareLocked();
}

VexaRoles Player::awaitNextLocked(Lock& lock)
{
    const quint64 serial = m_trackSerial;
    if (!m_prepareSent && m_state != State::Stopped)
        sendPrepareLocked();
    const RealClock::time_point deadline = RealClock::now() + std::chrono::milliseconds(AnswerWaitRealMs);
    while (serial == m_trackSerial && !nextAnsweredLocked() && RealClock::now() < deadline)
        m_wake.wait_for(lock, kAnswerPoll);
    return serial == m_trackSerial && m_hasNext ? m_nextTrack : VexaRoles();
}

void Player::streamDurationLocked(qint64 durationMs)
{
    if (m_durationFromRoles || durationMs <= 0 || durationMs == m_durationMs || m_state == State::Stopped)
        return;
    m_durationMs = durationMs;
    announceStatusLocked();
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
    if (m_state != State::Stopped)
        stopMediaLocked();
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

Player::RealClock::time_point Player::positionAnnouncementDueLocked() const
{
    return m_positionAnnouncedAt + kPositionInterval;
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
    // The backend's thread works out its next wake-up anew.
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

qint64 Player::rolesDurationMs(const VexaRoles& trackRoles)
{
    const QList<VexaMediaResource> resources = trackRoles.mediaData().resources();
    if (resources.isEmpty())
        return 0;
    bool ok = false;
    const double seconds = resources.first().value(VexaMediaResource::Duration()).toDouble(&ok);
    if (!ok || !(seconds > 0) || seconds > 1e9)
        return 0;
    return qint64(std::llround(seconds * 1000.0));
}

QString Player::uriOf(const VexaRoles& trackRoles)
{
    const QList<VexaMediaResource> resources = trackRoles.mediaData().resources();
    return resources.isEmpty() ? QString() : resources.first().uri();
}

VexaError Player::startErrorOf(const VexaRoles& trackRoles)
{
    const QString uri = uriOf(trackRoles);
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
