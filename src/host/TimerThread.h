#pragma once

#include <QtGlobal>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

// One thread that runs callbacks at their due time. Long polls, reply
// deadlines and stream keep-alives need wake-ups that no request thread may
// sit waiting for; callbacks run on this thread, outside its lock, so they may
// schedule or cancel others.
class TimerThread
{
public:
    using Clock = std::chrono::steady_clock;

    TimerThread();
    ~TimerThread();

    TimerThread(const TimerThread&) = delete;
    TimerThread& operator=(const TimerThread&) = delete;

    // Runs fn once, msecs from now; the id cancels it.
    quint64 schedule(int msecs, std::function<void()> fn);
    // Forgets a callback that has not started yet; harmless for unknown ids.
    void cancel(quint64 id);

private:
    void run();

    struct Entry
    {
        quint64 id;
        std::function<void()> fn;
    };

    std::mutex m_mutex;
    std::condition_variable m_cond;
    std::multimap<Clock::time_point, Entry> m_due;
    quint64 m_nextId = 1;
    bool m_quit = false;
    std::thread m_thread;
};
