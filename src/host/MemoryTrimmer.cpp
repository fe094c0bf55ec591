#include "MemoryTrimmer.h"

#include <malloc.h>

MemoryTrimmer::MemoryTrimmer(QObject* parent) : QObject(parent)
{
    // Fixed thresholds: glibc otherwise raises them after a large block is
    // freed (to tens of MB), and the arenas of the HTTP and module threads
    // then keep that much at their tops, where no trim reaches it. Only
    // blocks beyond 32 MiB are mapped on their own; up to as much may stay at
    // an arena's top until the timer finds it settled.
    mallopt(M_MMAP_THRESHOLD, int(MmapThresholdBytes));
    mallopt(M_TRIM_THRESHOLD, int(MmapThresholdBytes));
    connect(&m_timer, &QTimer::timeout, this, &MemoryTrimmer::on_timer_timeout);
    m_timer.start(CheckMs);
}

void MemoryTrimmer::on_timer_timeout()
{
    // The free bytes of every arena, without the ones mapped on their own
    // (those went back when they were freed).
    const std::size_t free = mallinfo2().fordblks;
    if (free > SlackBytes && free == m_lastFree)
        malloc_trim(0);
    m_lastFree = free;
}
