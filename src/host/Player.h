#pragma once

#include <CMReply.h>
#include <VexaPlayLogicCommand.h>
#include <VexaPlayLogicRequest.h>
#include <VexaPlayer.h>
#include <VexaValue.h>

#include <QHash>
#include <QVariantHash>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

// What every player behind "player:" shares, whatever makes the sound: the
// paths, the controls, the status and its announcements, the requests to the
// play logic, and the course of a track (start, hand over to the announced
// next one, end, fail and let the play logic resume). A backend (the emulated
// clock, the GStreamer pipeline) only moves media: the hooks below start,
// pause, seek and stop it, and it reports back with mediaStartedLocked(),
// handOverLocked(), mediaEndedLocked() and failTrackLocked().
//
// Every call is thread-safe and returns at once. The player reaches a play
// logic only through CMRoot()->invoke on the play logic's path (a
// VexaPlayLogicRequest), so play-logic code runs on its module's thread and
// never inside the player. Status, position, play mode and volume changes are
// announced through CMRoot()->valueChanged at player:/status,
// player:/position, player:/playMode and player:/volume.
class Player : public VexaPlayer
{
public:
    // How long before a track's end the play logic is asked for the next media.
    static constexpr qint64 PrepareAheadMs = 10000;
    // How long, in real time, the end of a track waits for a play logic that
    // has not yet answered the request for the next media.
    static constexpr int AnswerWaitRealMs = 5000;
    // The streamer error code of a media whose uri names none ("error:").
    static constexpr int MediaUnavailableCode = 1;
    static constexpr int DefaultVolume = 100;

    static QString prefix() { return QStringLiteral("player"); }
    static CMPath controlPath();
    static CMPath statusPath();
    static CMPath positionPath();
    static CMPath playModePath();
    static CMPath volumePath();
    // Where the volume is kept across restarts.
    static CMPath volumeSettingPath();

    // Reads the volume from the settings.
    Player();
    // A backend stops its threads in its own destructor, before this one runs.
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
    // 0 to 100; the caller has checked the range.
    void setVolume(int volume, const CMReply<QVariant>& reply);

    // {"state", "track", "container", "playLogicPath", "controls", "durationMs", "playMode", "error"}
    QVariantHash status() const;
    VexaValue positionValue() const;
    VexaValue playModeValue() const;
    VexaValue volumeValue() const;

protected:
    enum class State { Stopped, Playing, Paused };
    using Lock = std::unique_lock<std::mutex>;
    using RealClock = std::chrono::steady_clock;

    // --- The backend's part, called under the lock -------------------------
    // Starts the current track's media. followsOn: it follows the track
    // before without a gap (the backend may already be playing it).
    virtual void startMediaLocked(const QString& uri, qint64 startPositionMs, bool paused, bool followsOn) = 0;
    virtual void pauseMediaLocked() = 0;
    virtual void resumeMediaLocked() = 0;
    virtual void seekMediaLocked(qint64 positionMs) = 0;
    virtual void stopMediaLocked() = 0;
    // The position of the media that plays; only asked while a track is current.
    virtual qint64 mediaPositionLocked() const = 0;
    virtual void volumeChangedLocked(int /*volume*/) {}

    // --- What the backend reports, under the lock ---------------------------
    // The current track's media plays (or stands paused) for real now.
    void mediaStartedLocked();
    // The announced next track takes over from the current one.
    void handOverLocked();
    // The current media ran out: the announced next track starts, or playback ends.
    void mediaEndedLocked();
    // roles could not be played: the play logic hears why and goes on.
    void failTrackLocked(const VexaRoles& roles, const VexaError& error);
    // Asks for the next media once the track is close enough to its end.
    void prepareIfDueLocked(qint64 positionMs);
    // Waits (releasing the lock) until the play logic has said what follows
    // the current track, at most AnswerWaitRealMs; the next track's roles, or
    // empty ones when none follows or the track changed meanwhile. For a
    // backend's own thread only: it blocks.
    VexaRoles awaitNextLocked(Lock& lock);
    bool nextAnsweredLocked() const;
    // Where the request for the next media falls due; -1 when none is to be sent.
    qint64 preparePositionLocked() const;
    void announcePositionLocked();
    // When the position is next announced while playing (about once a second).
    RealClock::time_point positionAnnouncementDueLocked() const;
    // The stream knows how long the media lasts; taken when the roles did not say.
    void streamDurationLocked(qint64 durationMs);
    void wakeLocked() { m_wake.notify_all(); }

    static QString uriOf(const VexaRoles& trackRoles);
    // The duration the roles give (mediaData.resources[0].duration), 0 when none.
    static qint64 rolesDurationMs(const VexaRoles& trackRoles);

    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    State m_state = State::Stopped;
    VexaRoles m_track;
    qint64 m_durationMs = 0;
    bool m_hasNext = false;
    VexaRoles m_nextTrack;
    int m_volume = DefaultVolume;
    // Counts track starts and stops, so that a late answer about an earlier
    // track is not taken for one about the current track.
    quint64 m_trackSerial = 0;

private:
    qint64 positionLocked() const;
    qint64 prepareAtLocked() const;
    bool isCurrentLocked(const CMPath& playLogicPath) const;
    void startTrackLocked(const VexaRoles& trackRoles, qint64 startPositionMs, bool paused, bool followsOn);
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
    VexaValue volumeValueLocked() const;
    void announceStatusLocked();
    void announcePlayModeLocked();
    void announceLocked();

    // Whether two roles describe the same track, whatever their values say.
    static bool isSameTrack(const VexaRoles& a, const VexaRoles& b);
    static VexaError startErrorOf(const VexaRoles& trackRoles);
    static QString stateName(State state);

    CMPath m_playLogicPath;
    VexaRoles m_container;
    VexaError m_error;
    // The track that played before the one starting, for mediaPlaybackStarted.
    VexaRoles m_startedFrom;
    bool m_mediaStarted = false;
    bool m_durationFromRoles = false;

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

    QHash<QString, VexaPlayLogicData> m_data;
    QHash<QString, VexaPlayerPlayMode::Enum> m_playModes;

    QVariantHash m_announcedStatus;
    qint64 m_announcedPositionMs = 0;
    VexaValue m_announcedPlayMode;
    RealClock::time_point m_positionAnnouncedAt;
};
