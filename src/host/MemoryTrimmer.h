#pragma once

#include <QObject>
#include <QTimer>

#include <cstddef>

// Gives the allocator's free memory back to the system. A large request, or
// a large command in a module (a merge of a long playlist), leaves its freed
// memory in the arenas of the threads that used it, where it would stay for
// good; the device has none to spare. Checked once a second: when more than a
// little is held free and that amount has not changed since the last check
// (the work that freed it is over), it is returned. A burst of large requests
// reuses the same pages instead of faulting them in afresh each time.
class MemoryTrimmer : public QObject
{
    Q_OBJECT
public:
    static constexpr int CheckMs = 1000;
    static constexpr std::size_t SlackBytes = 4 * 1024 * 1024;
    static constexpr std::size_t MmapThresholdBytes = 32 * 1024 * 1024;

    explicit MemoryTrimmer(QObject* parent = nullptr);

private slots:
    void on_timer_timeout();

private:
    QTimer m_timer;
    std::size_t m_lastFree = 0;
};
