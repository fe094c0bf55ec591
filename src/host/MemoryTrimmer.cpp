#include "MemoryTrimmer.h"

#include <malloc.h>

MemoryTrimmer::MemoryTrimmer(QObject* parent) : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, &MemoryTrimmer::on_timer_timeout);
    m_timer.start(CheckMs);
}

void MemoryTrimmer::on_timer_timeout()
{
    // The free bytes of every arena, without the ones mapped on their own
    // (those went back when they were freed).
    if (mallinfo2().fordblks > SlackBytes)
        malloc_trim(0);
}
