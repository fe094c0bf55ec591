#pragma once

#include "Player.h"
#include "VirtualClock.h"

#include <thread>

// The emulated player: it plays no audio, only time. A track lasts its first
// resource's duration (180 s without one) on a virtual clock; a thread of the
// player's own wakes at the moments that matter: 10 s before a track ends it
// asks the play logic for the next media, at the end it starts the announced
// one without a gap or ends playback, and while playing it reports the
// position about once a real second.
class EmulatedPlayer : public Player
{
public:
    static constexpr qint64 DefaultDurationMs = 180000;

    explicit EmulatedPlayer(double timeScale);
    ~EmulatedPlayer() override;

protected:
    void startMediaLocked(const QString& uri, qint64 startPositionMs, bool paused, bool followsOn) override;
    void pauseMediaLocked() override;
    void resumeMediaLocked() override;
    void seekMediaLocked(qint64 positionMs) override;
    void stopMediaLocked() override;
    qint64 mediaPositionLocked() const override;

private:
    void run();
    void processDueLocked();
    RealClock::time_point nextDueLocked() const;
    RealClock::time_point realTimeAtPositionLocked(qint64 positionMs) const;

    VirtualClock m_clock;
    bool m_quit = false;
    // The track's position at the virtual moment m_anchorVirtualMs; while
    // paused, the position itself.
    qint64 m_anchorPositionMs = 0;
    qint64 m_anchorVirtualMs = 0;
    // Where the track that follows without a gap begins on the virtual clock.
    qint64 m_followVirtualMs = 0;
    bool m_waitingAtEnd = false;
    RealClock::time_point m_endWaitDeadline;
    std::thread m_thread;
};
