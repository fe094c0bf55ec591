#pragma once

#include "GLibLoopThread.h"
#include "Player.h"

#include <gst/gst.h>

// The player that plays for real: a GStreamer playbin into the configured
// audio sink. Everything done to the pipeline, and its bus, runs on the
// player's own GLib loop thread; the hooks of Player only post work there.
//
// A track starts paused (so that a bad uri fails before anything plays),
// seeks where it is asked to start, then plays; mediaPlaybackStarted goes out
// once the pipeline has prerolled. The next media that the play logic
// announced is handed to playbin in its about-to-finish signal, so the
// tracks join without a gap; playbin's stream-start then marks the hand-over.
// A uri that cannot be played fails with a MediaError code; a start that does
// not preroll within StartTimeoutMs fails as timed out.
class GstPlayer : public Player
{
public:
    // A track that has not started playing by then fails.
    static constexpr unsigned StartTimeoutMs = 10000;
    // An HTTP source that receives nothing for this long fails.
    static constexpr unsigned NetworkTimeoutSeconds = 5;

    // audioSink: a gst-launch description of the sink ("autoaudiosink",
    // "fakesink sync=false", "alsasink device=hw:1"). A sink that cannot be
    // made or opened is logged as an ERROR; tracks then fail.
    explicit GstPlayer(const QString& audioSink);
    ~GstPlayer() override;

    // The sink audio reaches (a new reference, or null when the sink could
    // not be made), for measurements that watch its buffers.
    GstElement* audioSink() const;

protected:
    void startMediaLocked(const QString& uri, qint64 startPositionMs, bool paused, bool followsOn) override;
    void pauseMediaLocked() override;
    void resumeMediaLocked() override;
    void seekMediaLocked(qint64 positionMs) override;
    void stopMediaLocked() override;
    qint64 mediaPositionLocked() const override;
    void volumeChangedLocked(int volume) override;

private:
    bool makePipeline(const QString& audioSink);
    // On the loop thread:
    void load(const QString& uri, quint64 serial);
    void setState(GstState state);
    void seekTo(qint64 positionMs);
    void applyVolume(int volume);
    void refreshPosition();
    void busMessage(GstMessage* message);
    void prerolled();
    void failed(GstMessage* message);
    void streamStarted();
    // The handed track becomes the current one; false when none was handed.
    bool takeHandedTrackLocked();
    void refreshDuration();
    void startTimedOut(quint64 serial);
    // On a streaming thread:
    void aboutToFinish();

    static gboolean onBusMessage(GstBus* bus, GstMessage* message, gpointer self);
    static void onAboutToFinish(GstElement* playbin, gpointer self);
    static void onSourceSetup(GstElement* playbin, GstElement* source, gpointer self);

    GstElement* m_playbin = nullptr;
    GstElement* m_sink = nullptr;
    QString m_sinkDescription;

    // Under the player's lock:
    // The uri playbin plays, and the one handed to it in about-to-finish that
    // has not started yet (with the roles it came with).
    QString m_streamUri;
    QString m_handedUri;
    VexaRoles m_handedTrack;
    // Between a start and the end of its preroll (and seek).
    bool m_awaitingStart = false;
    qint64 m_startSeekMs = -1;
    // The position last read from the pipeline, and when.
    qint64 m_cachedPositionMs = 0;
    RealClock::time_point m_cachedAt;

    // Last member: the thread goes first, while the pipeline still exists.
    GLibLoopThread m_loop;
};
