#pragma once

#include "VirtualClock.h"

#include <CMReply.h>
#include <VexaPlayLogicCommand.h>
#include <VexaPlayLogicRequest.h>
#include <VexaPlayer.h>
#include <VexaValue.h>

#include <QHash>
#include <QVariantHash>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

// The emulated player: it plays no audio, only time. A track lasts its first
// resource's duration (180 s without one) on a virtual clock; a thread of the
// player's own wakes at the moments that matter: 10 s before a track ends it
// asks the play logic for the next media, at the end it starts the announced
// one without a gap or ends playback, and while playing it reports the
// position about once a real second.
//
// Every call is thread-safe and returns at once. The player reaches a play
// logic only through CMRoot()->invoke on the play logic's path (a
// VexaPlayLogicRequest), so play-logic code runs on its module's thread and
// never inside the player. Status, position and play mode changes are
// announced through CMRoot()->valueChanged at player:/status,
// player:/position and player:/playMode.
class Player : public VexaPlayer
{
public:
    static constexpr qint64 DefaultDurationMs = 180000;
    // How long before a track's end the play logic is asked for the next media.
    static constexpr qint64 PrepareAheadMs = 10000;
    // How long, in real time, the end of a track waits for a play logic that
    // has not yet answered the request for the next media.
    static constexpr int AnswerWaitRealMs = 5000;
    // The streamer error code of a media whose uri names none ("error:").
    static constexpr int MediaUnavailableCode = 1;

    static QString prefix() { return QStringLiteral("player"); }
    static CMPath controlPath();
    static CMPath statusPath();
    static CMPath positionPath();
    static CMPath playModePath();

    explicit Player(double timeScale);
    ~Player() override;

    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    bool playContainer(const VexaRoles& containerRoles, const VexaRoles& trackRoles, int index,
                       qint64 startPositionMs, bool paused) override;
    bool stop(VexaPlayLogicStopReason::Enum reason) override;
    bool stopPlayLogic(const CMPath& playLogicPath, VexaPlayLogicStopReason::Enum reason) override;
    bool play(const CMPath& playLogicPath, const VexaRoles& trackRoles, const QVariantHash& options) override;
    bool setNextMedia(const CMPath& playLogicPath, const VexaRoles& trackRoles, const QVariantHash& options) override;
    bool clearNextMedia(const CMPath& playLogicPath) override;
    void publishData(const CMPath& playLogicPath, const VexaPlayLogicData& data) override;
    void publishPlayMode(const CMPath& playLogicPath, VexaPlayerPlayMode::Enum mode) override;
    qint64 positionMs() const override;

    // The user's controls. Each completes reply: at once when the player
    // handles it, or with the play logic's answer when it goes there.
    // Hands the container to its play logic; reply gets the play logic's answer.
    void startContainer(const VexaRoles& containerRoles, const VexaRoles& trackRoles, int index,
                        qint64 startPositionMs, bool paused, const CMReply<QVariant>& reply);
    void pause(const CMReply<QVariant>& reply);
    void resume(const CMReply<QVariant>& reply);
    void seek(qint64 positionMs, const CMReply<QVariant>& reply);
    // Stop, next and previous go to the current play logic (stop also stops
    // the player at once, whether or not the play logic answers).
    void sendCommand(VexaPlayLogicCommand::Enum command, const CMReply<QVariant>& reply);
    void changePlayMode(VexaPlayerPlayMode::Enum mode, const CMReply<QVariant>& reply);

    // {"state", "track", "container", "playLogicPath", "controls", "durationMs", "playMode", "error"}
    QVariantHash status() const;
    VexaValue positionValue() const;
    VexaValue playModeValue() const;

private:
    enum class State { Stopped, Playing, Paused };
    using RealClock = VirtualClock::RealClock;
    using Lock = std::unique_lock<std::mutex>;

    void run();
    void processDueLocked();
    RealClock::time_point nextDueLocked() const;
    RealClock::time_point realTimeAtPositionLocked(qint64 positionMs) const;

    qint64 positionLocked() const;
    qint64 prepareAtLocked() const;
    bool isCurrentLocked(const CMPath& playLogicPath) const;
    bool nextAnsweredLocked() const;
    void startTrackLocked(const VexaRoles& trackRoles, qint64 anchorVirtualMs, qint64 startPositionMs, bool paused);
    void handOverLocked();
    void endPlaybackLocked();
    bool stopLocked(VexaPlayLogicStopReason::Enum reason);
    // Nothing plays any more, and the player says so.
    void clearTrackLocked();
    void forgetNextLocked();
    void sendPrepareLocked();
    void sendLocked(const CMPath& playLogicPath, const VexaPlayLogicRequest& request,
                    const CMReply<QVariant>& reply = CMReply<QVariant>());

    QVariantHash statusLocked() const;
    VexaValue playModeValueLocked() const;
    void announceStatusLocked();
    void announcePositionLocked();
    void announcePlayModeLocked();
    void announceLocked();

    // Whether two roles describe the same track, whatever their values say.
    static bool isSameTrack(const VexaRoles& a, const VexaRoles& b);
    static qint64 durationOf(const VexaRoles& trackRoles);
    static VexaError startErrorOf(const VexaRoles& trackRoles);
    static QString stateName(State state);

    VirtualClock m_clock;
    // Public members take it, *Locked ones run under it and take nothing. A
    // plain mutex: nothing reached while holding it calls back into the player
    // (requests to play logics are queued to their threads).
    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_quit = false;

    State m_state = State::Stopped;
    CMPath m_playLogicPath;
    VexaRoles m_container;
    VexaRoles m_track;
    VexaError m_error;
    qint64 m_durationMs = 0;
    // The track's position at the virtual moment m_anchorVirtualMs; while
    // paused, the position itself.
    qint64 m_anchorPositionMs = 0;
    qint64 m_anchorVirtualMs = 0;
    // Counts track starts and stops, so that a late answer about an earlier
    // track is not taken for one about the current track.
    quint64 m_trackSerial = 0;

    // The container handed to the play logic and where it asked the first
    // track to start; it becomes the player's when that track starts.
    bool m_startPending = false;
    VexaRoles m_pendingContainer;
    qint64 m_pendingPositionMs = 0;
    bool m_pendingPaused = false;

    bool m_prepareSent = false;
    bool m_nextAnswered = false;
    // Set by the completion of the prepareNextMedia request, which may come
    // from any thread and outlive the player; hence not a member guarded by
    // the mutex but a shared counter of the serial answered.
    std::shared_ptr<std::atomic<quint64>> m_preparedSerial;
    bool m_hasNext = false;
    VexaRoles m_nextTrack;
    bool m_waitingAtEnd = false;
    RealClock::time_point m_endWaitDeadline;

    QHash<QString, VexaPlayLogicData> m_data;
    QHash<QString, VexaPlayerPlayMode::Enum> m_playModes;

    QVariantHash m_announcedStatus;
    qint64 m_announcedPositionMs = 0;
    VexaValue m_announcedPlayMode;
    RealClock::time_point m_positionAnnouncedAt;

    std::thread m_thread;
};
