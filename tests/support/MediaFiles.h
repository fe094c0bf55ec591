#pragma once

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

// Writes a sine tone of ms milliseconds (a multiple of 10), 16-bit stereo
// at SampleRate, as FLAC to path; false when GStreamer could not.
bool writeTone(const QString& path, int ms, int frequency = 440);
// Writes bytes that are no audio format at all.
bool writeGarbage(const QString& path);
QString uriOf(const QString& path);

} // namespace MediaFiles
