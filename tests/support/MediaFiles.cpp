#include "MediaFiles.h"

#include <QFile>
#include <QUrl>

#include <gst/gst.h>

#include <mutex>

namespace MediaFiles {

bool writeTone(const QString& path, int ms, int frequency)
{
    static std::once_flag once;
    std::call_once(once, []() { gst_init(nullptr, nullptr); });
    // Buffers of 10 ms, so that the tone holds exactly the samples asked for.
    const QString description =
        QStringLiteral("audiotestsrc num-buffers=%1 samplesperbuffer=%2 freq=%3 volume=0.5 ! "
                       "audio/x-raw,format=S16LE,rate=%4,channels=%5 ! flacenc ! filesink location=\"%6\"")
            .arg(ms / 10)
            .arg(SampleRate / 100)
            .arg(frequency)
            .arg(SampleRate)
            .arg(Channels)
            .arg(path);
    GError* error = nullptr;
    GstElement* pipeline = gst_parse_launch(description.toUtf8().constData(), &error);
    if (!pipeline) {
        g_clear_error(&error);
        return false;
    }
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    GstBus* bus = gst_element_get_bus(pipeline);
    GstMessage* message =
        gst_bus_timed_pop_filtered(bus, 30 * GST_SECOND, GstMessageType(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
    const bool done = message && GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS;
    if (message)
        gst_message_unref(message);
    gst_object_unref(bus);
    gst_element_set_state(pipeline, GST_STATE_NULL);
    gst_object_unref(pipeline);
    return done;
}

bool writeGarbage(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(QByteArray(4096, '\x5a')) == 4096;
}

QString uriOf(const QString& path)
{
    return QUrl::fromLocalFile(path).toString();
}

} // namespace MediaFiles
