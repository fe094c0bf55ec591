#include "GstPlayer.h"

#include "MediaError.h"

#include <VexaLog.h>

#include <mutex>

namespace {

log4cplus::Logger logger()
{
    return log4cplus::Logger::getInstance("Player");
}

// playbin's flags (GstPlayFlags): audio only, volume done in software.
constexpr guint kPlayFlagAudio = 1 << 1;
constexpr guint kPlayFlagSoftVolume = 1 << 4;
// How often the position is read from the pipeline while playing.
constexpr unsigned kPositionPollMs = 100;

void initGStreamer()
{
    static std::once_flag once;
    std::call_once(once, []() { gst_init(nullptr, nullptr); });
}

} // namespace

GstPlayer::GstPlayer(const QString& audioSink) : m_sinkDescription(audioSink)
{
    initGStreamer();
    if (!makePipeline(audioSink))
        return;
    GstBus* bus = gst_element_get_bus(m_playbin);
    GSource* watch = gst_bus_create_watch(bus);
    g_source_set_callback(watch, reinterpret_cast<GSourceFunc>(reinterpret_cast<void (*)()>(&GstPlayer::onBusMessage)), this, nullptr);
    m_loop.attach(watch);
    gst_object_unref(bus);
    m_loop.schedule(kPositionPollMs, [this]() {
        refreshPosition();
        return true;
    });
    LOG4CPLUS_INFO(logger(), "GStreamer player plays into \"" << audioSink << "\"");
}

GstPlayer::~GstPlayer()
{
    {
        // Ends a streaming thread's wait for the play logic.
        const Lock lock(m_mutex);
        ++m_trackSerial;
    }
    m_loop.stop();
    if (m_playbin) {
        gst_element_set_state(m_playbin, GST_STATE_NULL);
        gst_object_unref(m_playbin);
    }
    if (m_sink)
        gst_object_unref(m_sink);
}

GstElement* GstPlayer::audioSink() const
{
    return m_sink ? GST_ELEMENT(gst_object_ref(m_sink)) : nullptr;
}

bool GstPlayer::makePipeline(const QString& audioSink)
{
    GError* error = nullptr;
    GstElement* sink = gst_parse_bin_from_description(audioSink.toUtf8().constData(), TRUE, &error);
    if (!sink) {
        LOG4CPLUS_ERROR(logger(), "Audio sink \"" << audioSink << "\" cannot be made: " << (error ? error->message : "unknown error")
                                                  << "; nothing will play");
        g_clear_error(&error);
        return false;
    }
    g_clear_error(&error);
    m_sink = GST_ELEMENT(gst_object_ref_sink(sink));
    // Opening it once tells at start whether there is a device to play on.
    if (gst_element_set_state(m_sink, GST_STATE_READY) == GST_STATE_CHANGE_FAILURE)
        LOG4CPLUS_ERROR(logger(), "Audio sink \"" << audioSink << "\" cannot open (no sound device?); tracks will fail."
                                                  << " --audio-sink fakesink plays into nothing");
    gst_element_set_state(m_sink, GST_STATE_NULL);

    m_playbin = gst_element_factory_make("playbin", "player");
    if (!m_playbin) {
        LOG4CPLUS_ERROR(logger(), "GStreamer has no playbin (gstreamer1.0-plugins-base); nothing will play");
        return false;
    }
    gst_object_ref_sink(m_playbin);
    g_object_set(m_playbin, "flags", kPlayFlagAudio | kPlayFlagSoftVolume, "audio-sink", m_sink, nullptr);
    applyVolume(m_volume);
    g_signal_connect(m_playbin, "about-to-finish", G_CALLBACK(&GstPlayer::onAboutToFinish), this);
    g_signal_connect(m_playbin, "source-setup", G_CALLBACK(&GstPlayer::onSourceSetup), this);
    return true;
}

// --- Player's hooks, under the lock: they only post work to the loop -----------------

void GstPlayer::startMediaLocked(const QString& uri, qint64 startPositionMs, bool, bool followsOn)
{
    m_cachedPositionMs = followsOn ? 0 : startPositionMs;
    m_cachedAt = RealClock::now();
    if (followsOn && uri == m_streamUri) {
        // playbin already plays it: the hand-over was its stream-start.
        mediaStartedLocked();
        return;
    }
    m_streamUri = uri;
    m_handedUri.clear();
    m_awaitingStart = true;
    m_startSeekMs = startPositionMs > 0 ? startPositionMs : -1;
    const quint64 serial = m_trackSerial;
    m_loop.post([this, uri, serial]() { load(uri, serial); });
}

void GstPlayer::pauseMediaLocked()
{
    m_cachedPositionMs = mediaPositionLocked();
    m_cachedAt = RealClock::now();
    // A track still starting stays paused when it has prerolled.
    if (!m_awaitingStart)
        m_loop.post([this]() { setState(GST_STATE_PAUSED); });
}

void GstPlayer::resumeMediaLocked()
{
    m_cachedAt = RealClock::now();
    if (!m_awaitingStart)
        m_loop.post([this]() { setState(GST_STATE_PLAYING); });
}

void GstPlayer::seekMediaLocked(qint64 positionMs)
{
    m_cachedPositionMs = positionMs;
    m_cachedAt = RealClock::now();
    if (m_awaitingStart)
        m_startSeekMs = positionMs;
    else
        m_loop.post([this, positionMs]() { seekTo(positionMs); });
}

void GstPlayer::stopMediaLocked()
{
    m_awaitingStart = false;
    m_streamUri.clear();
    m_handedUri.clear();
    m_cachedPositionMs = 0;
    m_loop.post([this]() { setState(GST_STATE_NULL); });
}

qint64 GstPlayer::mediaPositionLocked() const
{
    if (m_state != State::Playing || m_awaitingStart)
        return m_cachedPositionMs;
    // Between two reads of the pipeline the position runs on with the clock.
    const qint64 since = std::chrono::duration_cast<std::chrono::milliseconds>(RealClock::now() - m_cachedAt).count();
    const qint64 position = m_cachedPositionMs + since;
    return m_durationMs > 0 ? qMin(position, m_durationMs) : position;
}

void GstPlayer::volumeChangedLocked(int volume)
{
    m_loop.post([this, volume]() { applyVolume(volume); });
}

// --- The loop thread ---------------------------------------------------------------

void GstPlayer::load(const QString& uri, quint64 serial)
{
    {
        const Lock lock(m_mutex);
        if (serial != m_trackSerial)
            return;
        if (!m_playbin) {
            failTrackLocked(m_track, MediaError::make(MediaError::OutputFailed, uri,
                                                      QStringLiteral("no pipeline (see the ERROR at start)")));
            return;
        }
    }
    setState(GST_STATE_NULL);
    g_object_set(m_playbin, "uri", uri.toUtf8().constData(), nullptr);
    LOG4CPLUS_DEBUG(logger(), "Loading " << uri);
    gst_element_set_state(m_playbin, GST_STATE_PAUSED);
    m_loop.schedule(StartTimeoutMs, [this, serial]() {
        startTimedOut(serial);
        return false;
    });
}

void GstPlayer::setState(GstState state)
{
    if (!m_playbin)
        return;
    gst_element_set_state(m_playbin, state);
    if (state == GST_STATE_NULL) {
        // What the stopped media still had to say is of no interest now.
        GstBus* bus = gst_element_get_bus(m_playbin);
        gst_bus_set_flushing(bus, TRUE);
        gst_bus_set_flushing(bus, FALSE);
        gst_object_unref(bus);
    }
}

void GstPlayer::seekTo(qint64 positionMs)
{
    if (m_playbin && !gst_element_seek_simple(m_playbin, GST_FORMAT_TIME, GstSeekFlags(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_ACCURATE),
                                              positionMs * GST_MSECOND))
        LOG4CPLUS_WARN(logger(), "The pipeline refused to seek to " << positionMs << " ms");
}

void GstPlayer::applyVolume(int volume)
{
    // A cubic scale, closer to what the ear hears than playbin's linear factor.
    const double fraction = volume / 100.0;
    g_object_set(m_playbin, "volume", fraction * fraction * fraction, nullptr);
}

void GstPlayer::refreshPosition()
{
    {
        const Lock lock(m_mutex);
        if (m_state != State::Playing || m_awaitingStart)
            return;
    }
    gint64 position = 0;
    if (!m_playbin || !gst_element_query_position(m_playbin, GST_FORMAT_TIME, &position) || position < 0)
        return;
    const Lock lock(m_mutex);
    if (m_state != State::Playing || m_awaitingStart)
        return;
    m_cachedPositionMs = position / GST_MSECOND;
    m_cachedAt = RealClock::now();
    prepareIfDueLocked(m_cachedPositionMs);
    if (RealClock::now() >= positionAnnouncementDueLocked())
        announcePositionLocked();
}

gboolean GstPlayer::onBusMessage(GstBus*, GstMessage* message, gpointer self)
{
    static_cast<GstPlayer*>(self)->busMessage(message);
    return G_SOURCE_CONTINUE;
}

void GstPlayer::busMessage(GstMessage* message)
{
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ASYNC_DONE:
        prerolled();
        break;
    case GST_MESSAGE_ERROR:
        failed(message);
        break;
    case GST_MESSAGE_EOS: {
        const Lock lock(m_mutex);
        m_handedUri.clear();
        mediaEndedLocked();
        break;
    }
    case GST_MESSAGE_STREAM_START:
        streamStarted();
        break;
    case GST_MESSAGE_DURATION_CHANGED:
        refreshDuration();
        break;
    default:
        break;
    }
}

void GstPlayer::prerolled()
{
    Lock lock(m_mutex);
    if (!m_awaitingStart)
        return;
    if (m_startSeekMs > 0) {
        const qint64 seekMs = m_startSeekMs;
        m_startSeekMs = -1;
        lock.unlock();
        // Its own preroll ends the start; a refused seek starts at the beginning.
        if (!gst_element_seek_simple(m_playbin, GST_FORMAT_TIME, GstSeekFlags(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_ACCURATE),
                                     seekMs * GST_MSECOND))
            prerolled();
        return;
    }
    m_awaitingStart = false;
    m_cachedAt = RealClock::now();
    const bool play = m_state == State::Playing;
    mediaStartedLocked();
    lock.unlock();
    refreshDuration();
    if (play)
        setState(GST_STATE_PLAYING);
}

void GstPlayer::failed(GstMessage* message)
{
    GstObject* element = GST_MESSAGE_SRC(message);
    MediaError::Origin origin = MediaError::Origin::Stream;
    if (m_sink && gst_object_has_as_ancestor(element, GST_OBJECT(m_sink)))
        origin = MediaError::Origin::Sink;
    // playbin's only source elements are the ones that read uris (the bins
    // that hold one carry the flag too, and report other things).
    else if (GST_IS_ELEMENT(element) && !GST_IS_BIN(element) && GST_OBJECT_FLAG_IS_SET(element, GST_ELEMENT_FLAG_SOURCE))
        origin = MediaError::Origin::Source;
    const Lock lock(m_mutex);
    const bool handed = !m_handedUri.isEmpty();
    if (m_state == State::Stopped && !handed)
        return;
    // An error after a hand-over belongs to the track handed over.
    const VexaRoles track = handed ? m_handedTrack : m_track;
    failTrackLocked(track, MediaError::fromMessage(message, handed ? m_handedUri : m_streamUri, origin));
}

void GstPlayer::streamStarted()
{
    const Lock lock(m_mutex);
    takeHandedTrackLocked();
}

bool GstPlayer::takeHandedTrackLocked()
{
    if (m_handedUri.isEmpty())
        return false;
    // The handed track is what plays now, whatever the play logic announced since.
    m_streamUri = m_handedUri;
    m_handedUri.clear();
    m_hasNext = true;
    m_nextTrack = m_handedTrack;
    handOverLocked();
    return true;
}

void GstPlayer::refreshDuration()
{
    gint64 duration = 0;
    if (!m_playbin || !gst_element_query_duration(m_playbin, GST_FORMAT_TIME, &duration) || duration <= 0)
        return;
    const Lock lock(m_mutex);
    streamDurationLocked(duration / GST_MSECOND);
}

void GstPlayer::startTimedOut(quint64 serial)
{
    const Lock lock(m_mutex);
    if (serial != m_trackSerial || !m_awaitingStart)
        return;
    failTrackLocked(m_track, MediaError::make(MediaError::TimedOut, m_streamUri,
                                              QStringLiteral("it did not start within %1 s").arg(StartTimeoutMs / 1000)));
}

// --- Streaming threads -------------------------------------------------------------

void GstPlayer::onAboutToFinish(GstElement*, gpointer self)
{
    static_cast<GstPlayer*>(self)->aboutToFinish();
}

void GstPlayer::aboutToFinish()
{
    Lock lock(m_mutex);
    // A short track may be read to its end before its preroll has been
    // taken note of on the loop thread; the play logic hears of its start first.
    const quint64 serial = m_trackSerial;
    const RealClock::time_point deadline = RealClock::now() + std::chrono::milliseconds(AnswerWaitRealMs);
    while (m_awaitingStart && serial == m_trackSerial && RealClock::now() < deadline)
        m_wake.wait_for(lock, std::chrono::milliseconds(5));
    if (m_state == State::Stopped || m_awaitingStart || serial != m_trackSerial)
        return;
    // A short handed track can be read to its end before the loop thread has
    // seen it start: it is the current one now, and the next is asked after it,
    // not after the track before (which would hand the same track over again).
    takeHandedTrackLocked();
    // Blocking here is blocking GStreamer's streaming thread, which is what
    // lets the next track join without a gap.
    const VexaRoles next = awaitNextLocked(lock);
    const QString uri = uriOf(next);
    // An "error:" uri is left to fail when the current track has ended.
    if (next.isEmpty() || uri.startsWith(QLatin1String("error:")) || !gst_uri_is_valid(uri.toUtf8().constData()))
        return;
    m_handedUri = uri;
    m_handedTrack = next;
    lock.unlock();
    LOG4CPLUS_DEBUG(logger(), "Handing over to " << uri);
    g_object_set(m_playbin, "uri", uri.toUtf8().constData(), nullptr);
}

void GstPlayer::onSourceSetup(GstElement*, GstElement* source, gpointer)
{
    // A server that stalls fails the track instead of holding it forever.
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(source), "timeout"))
        g_object_set(source, "timeout", guint(NetworkTimeoutSeconds), nullptr);
}
