#include "MediaFiles.h"

#include <QBuffer>
#include <QColor>
#include <QFile>
#include <QImage>
#include <QUrl>

#include <gst/gst.h>

#include <attachedpictureframe.h>
#include <fileref.h>
#include <flacfile.h>
#include <id3v2tag.h>
#include <mpegfile.h>
#include <tpropertymap.h>

#include <mutex>

namespace MediaFiles {

namespace {

const char* encoderOf(Format format)
{
    switch (format) {
    case Format::Mp3:
        // Constant bitrate: without a Xing header, readers take a VBR file's
        // length from its first frame.
        return "lamemp3enc target=bitrate cbr=true bitrate=128 ! id3v2mux";
    case Format::Vorbis:
        return "audioconvert ! vorbisenc ! oggmux";
    case Format::Opus:
        return "audioresample ! audio/x-raw,rate=48000 ! opusenc ! oggmux";
    case Format::Wav:
        return "wavenc";
    case Format::Flac:
        break;
    }
    return "flacenc";
}

// Runs a gst-launch pipeline to its end; false when it fails or takes over 30 s.
bool runPipeline(const QString& description)
{
    static std::once_flag once;
    std::call_once(once, []() { gst_init(nullptr, nullptr); });
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

} // namespace

bool writeTone(const QString& path, int ms, int frequency, Format format)
{
    // Buffers of 10 ms, so that the tone holds exactly the samples asked for.
    const QString description =
        QStringLiteral("audiotestsrc num-buffers=%1 samplesperbuffer=%2 freq=%3 volume=0.5 ! "
                       "audio/x-raw,format=S16LE,rate=%4,channels=%5 ! %6 ! filesink location=\"%7\"")
            .arg(ms / 10)
            .arg(SampleRate / 100)
            .arg(frequency)
            .arg(SampleRate)
            .arg(Channels)
            .arg(QString::fromLatin1(encoderOf(format)), path);
    return runPipeline(description);
}

bool plays(const QString& uri)
{
    return runPipeline(QStringLiteral("playbin uri=\"%1\" audio-sink=\"fakesink sync=false\"").arg(uri));
}

bool tag(const QString& path, const QHash<QString, QString>& tags, const QByteArray& picture)
{
    const QByteArray name = QFile::encodeName(path);
    TagLib::FileRef ref(name.constData());
    if (ref.isNull())
        return false;
    TagLib::PropertyMap properties = ref.file()->properties();
    for (auto it = tags.constBegin(); it != tags.constEnd(); ++it)
        properties.replace(it.key().toStdString(), TagLib::String(it.value().toStdString(), TagLib::String::UTF8));
    ref.file()->setProperties(properties);
    if (!picture.isEmpty()) {
        const TagLib::ByteVector data(picture.constData(), uint(picture.size()));
        const TagLib::String mime = picture.startsWith("\x89PNG") ? "image/png" : "image/jpeg";
        if (auto* flac = dynamic_cast<TagLib::FLAC::File*>(ref.file())) {
            auto* cover = new TagLib::FLAC::Picture;
            cover->setType(TagLib::FLAC::Picture::FrontCover);
            cover->setMimeType(mime);
            cover->setData(data);
            flac->addPicture(cover);
        } else if (auto* mpeg = dynamic_cast<TagLib::MPEG::File*>(ref.file())) {
            auto* frame = new TagLib::ID3v2::AttachedPictureFrame;
            frame->setType(TagLib::ID3v2::AttachedPictureFrame::FrontCover);
            frame->setMimeType(mime);
            frame->setPicture(data);
            mpeg->ID3v2Tag(true)->addFrame(frame);
        } else {
            return false;
        }
    }
    return ref.save();
}

QByteArray picture(quint32 color, int size, const char* format)
{
    QImage image(size, size, QImage::Format_RGB32);
    image.fill(QColor(QRgb(color)));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
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
