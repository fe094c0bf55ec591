#include "VirtualClock.h"

#include <cmath>

VirtualClock::VirtualClock(double scale) : m_scale(scale > 0 ? scale : 1.0), m_start(RealClock::now())
{
}

qint64 VirtualClock::nowMs() const
{
    const std::chrono::duration<double, std::milli> real = RealClock::now() - m_start;
    return qint64(std::floor(real.count() * m_scale));
}

VirtualClock::RealClock::time_point VirtualClock::realTimeAt(qint64 virtualMs) const
{
    // Rounded up, with a microsecond to spare, so that a wake-up at this
    // moment finds the virtual time reached.
    const std::chrono::duration<double, std::micro> real(std::ceil(double(virtualMs) * 1000.0 / m_scale) + 1.0);
    return m_start + std::chrono::duration_cast<RealClock::duration>(real);
}
