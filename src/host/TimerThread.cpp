#include "TimerThread.h"

TimerThread::TimerThread() : m_thread([this]() { run(); }) {}

TimerThread::~TimerThread()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_quit = true;
    }
    m_cond.notify_all();
    m_thread.join();
}

quint64 TimerThread::schedule(int msecs, std::function<void()> fn)
{
    quint64 id;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        id = m_nextId++;
        m_due.emplace(Clock::now() + std::chrono::milliseconds(qMax(0, msecs)), Entry{id, std::move(fn)});
    }
    m_cond.notify_all();
    return id;
}

void TimerThread::cancel(quint64 id)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    for (auto it = m_due.begin(); it != m_due.end(); ++it) {
        if (it->second.id == id) {
            m_due.erase(it);
            return;
        }
    }
}

void TimerThread::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_quit) {
        if (m_due.empty()) {
            m_cond.wait(lock);
            continue;
        }
        const auto first = m_due.begin();
        // A copy: the entry may be cancelled, and its node freed, while we wait.
        const Clock::time_point due = first->first;
        if (due > Clock::now()) {
            m_cond.wait_until(lock, due);
            continue;
        }
        std::function<void()> fn = std::move(first->second.fn);
        m_due.erase(first);
        lock.unlock();
        fn();
        lock.lock();
    }
}
