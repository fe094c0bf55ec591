#pragma once

#include <QtGlobal>

#include <chrono>

// The player's clock: milliseconds that advance with real time multiplied by
// a scale, so that a track of minutes can play through in a test's moment.
class VirtualClock
{
public:
    using RealClock = std::chrono::steady_clock;

    // A scale that is not above zero runs the clock at real speed.
    explicit VirtualClock(double scale);

    double scale() const { return m_scale; }
    // Virtual milliseconds since the clock was made.
    qint64 nowMs() const;
    // The real moment at which nowMs() reaches virtualMs (never before it).
    RealClock::time_point realTimeAt(qint64 virtualMs) const;

private:
    double m_scale;
    RealClock::time_point m_start;
};
