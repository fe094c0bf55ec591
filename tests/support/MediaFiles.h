#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

// Audio made at test time by GStreamer itself: tones of an exact length, so
// that tests can count samples, and files that no decoder takes.
namespace MediaFiles {

constexpr int SampleRate = 44100;
constexpr int Channels = 2;
// Samples (per channel) of a tone of ms milliseconds.
constexpr qint64 samplesOf(int ms)
{
    return qint64(ms) * SampleRate / 1000;
}

// The encoders a tone can be written with, by the file's suffix.
enum class Format { Flac, Mp3, Vorbis, Opus, Wav };

// Writes a sine tone of ms milliseconds (a multiple of 10), 16-bit stereo
// at SampleRate, as FLAC (or format) to path; false when GStreamer could not.
bool writeTone(const QString& path, int ms, int frequency = 440, Format format = Format::Flac);
// Whether GStreamer plays uri through to its end.
bool plays(const QString& uri);

// Tags a written file with TagLib: TITLE, ARTIST, ALBUM, ALBUMARTIST, GENRE,
// TRACKNUMBER, DISCNUMBER, DATE as given (others left as they are), and an
// embedded front cover when picture holds an image; false when TagLib could not.
bool tag(const QString& path, const QHash<QString, QString>& tags, const QByteArray& picture = QByteArray());
// A square picture of size pixels in one color (0xRRGGBB), encoded as
// format ("PNG" or "JPEG").
QByteArray picture(quint32 color, int size, const char* format);
// Writes bytes that are no audio format at all.
bool writeGarbage(const QString& path);
QString uriOf(const QString& path);

} // namespace MediaFiles
