#include "EmulatedPlayer.h"

#include <VexaLog.h>

#include <algorithm>

namespace {

log4cplus::Logger logger()
{
    return log4cplus::Logger::getInstance("Player");
}

// While the end of a track waits for the play logic, how often it looks
// whether the request for the next media has been answered.
constexpr std::chrono::milliseconds kAnswerPoll(5);

} // namespace

EmulatedPlayer::EmulatedPlayer(double timeScale) : m_clock(timeScale)
{
    m_thread = std::thread([this]() { run(); });
    LOG4CPLUS_INFO(logger(), "Emulated player runs at " << m_clock.scale() << " times real time");
}

EmulatedPlayer::~EmulatedPlayer()
{
    {
        const Lock lock(m_mutex);
        m_quit = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void EmulatedPlayer::startMediaLocked(const QString&, qint64 startPositionMs, bool, bool followsOn)
{
    if (m_durationMs <= 0)
        m_durationMs = DefaultDurationMs;
    m_anchorPositionMs = qBound<qint64>(0, startPositionMs, m_durationMs);
    m_anchorVirtualMs = followsOn ? m_followVirtualMs : m_clock.nowMs();
    m_waitingAtEnd = false;
    mediaStartedLocked();
}

void EmulatedPlayer::pauseMediaLocked()
{
    m_anchorPositionMs = mediaPositionLocked();
}

void EmulatedPlayer::resumeMediaLocked()
{
    m_anchorVirtualMs = m_clock.nowMs();
}

void EmulatedPlayer::seekMediaLocked(qint64 positionMs)
{
    m_anchorPositionMs = positionMs;
    m_anchorVirtualMs = m_clock.nowMs();
    m_waitingAtEnd = false;
}

void EmulatedPlayer::stopMediaLocked()
{
    m_anchorPositionMs = 0;
    m_waitingAtEnd = false;
}

qint64 EmulatedPlayer::mediaPositionLocked() const
{
    if (m_state == State::Paused)
        return m_anchorPositionMs;
    return qMin(m_durationMs, m_anchorPositionMs + (m_clock.nowMs() - m_anchorVirtualMs));
}

void EmulatedPlayer::run()
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

void EmulatedPlayer::processDueLocked()
{
    if (m_state != State::Playing)
        return;
    const qint64 position = mediaPositionLocked();
    prepareIfDueLocked(position);
    if (position >= m_durationMs) {
        if (m_hasNext) {
            // Without a gap: the next track starts at the virtual moment the
            // current one ended, unless the end had to wait for the play logic.
            m_followVirtualMs =
                m_waitingAtEnd ? m_clock.nowMs() : m_anchorVirtualMs + (m_durationMs - m_anchorPositionMs);
            handOverLocked();
        } else if (nextAnsweredLocked() || (m_waitingAtEnd && RealClock::now() >= m_endWaitDeadline)) {
            mediaEndedLocked();
        } else if (!m_waitingAtEnd) {
            m_waitingAtEnd = true;
            m_endWaitDeadline = RealClock::now() + std::chrono::milliseconds(AnswerWaitRealMs);
            LOG4CPLUS_DEBUG(logger(), "End of track waits for the play logic to name the next media");
        }
    }
    if (m_state == State::Playing && RealClock::now() >= positionAnnouncementDueLocked())
        announcePositionLocked();
}

EmulatedPlayer::RealClock::time_point EmulatedPlayer::nextDueLocked() const
{
    if (m_state != State::Playing)
        return RealClock::time_point::max();
    RealClock::time_point due = positionAnnouncementDueLocked();
    const qint64 prepareAt = preparePositionLocked();
    if (prepareAt >= 0)
        due = std::min(due, realTimeAtPositionLocked(prepareAt));
    if (m_waitingAtEnd)
        due = std::min({due, m_endWaitDeadline, RealClock::now() + kAnswerPoll});
    else
        due = std::min(due, realTimeAtPositionLocked(m_durationMs));
    return due;
}

EmulatedPlayer::RealClock::time_point EmulatedPlayer::realTimeAtPositionLocked(qint64 positionMs) const
{
    return m_clock.realTimeAt(m_anchorVirtualMs + (positionMs - m_anchorPositionMs));
}
