#pragma once

#include <VexaError.h>

#include <gst/gst.h>

// The streamer errors of media the GStreamer player cannot play, with codes
// that read like HTTP's: the play logic sees the same kind of error whatever
// failed, a file, a server or the sound output.
namespace MediaError {

constexpr int NotFound = 404;
// No element takes the data: an unknown or broken format.
constexpr int Unsupported = 415;
// The audio output failed (no sound device, a sink that cannot open).
constexpr int OutputFailed = 500;
// The server could not be reached or stopped answering.
constexpr int Unreachable = 503;
// The media did not start playing in time.
constexpr int TimedOut = 504;

// Where in the pipeline an error arose.
enum class Origin {
    // The element that reads the uri: whatever it reports, it could not read.
    Source,
    // The audio output.
    Sink,
    // Everything between: typefinding, demuxing, decoding.
    Stream,
};

VexaError make(int code, const QString& uri, const QString& why);
// The error of an ERROR message of the pipeline, posted by an element of origin.
VexaError fromMessage(GstMessage* message, const QString& uri, Origin origin);

} // namespace MediaError
