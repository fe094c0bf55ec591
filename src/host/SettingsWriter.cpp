#include "SettingsWriter.h"

SettingsWriter::SettingsWriter(std::function<void(const Replies&)> write)
    : m_write(std::move(write)), m_thread([this]() { run(); })
{
}

SettingsWriter::~SettingsWriter()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_quit = true;
    }
    m_cond.notify_all();
    m_thread.join();
}

void SettingsWriter::queue(const CMReply<QVariant>& reply)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_queued.push_back(reply);
    }
    m_cond.notify_all();
}

void SettingsWriter::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_cond.wait(lock, [this]() { return m_quit || !m_queued.empty(); });
        // Stopping still writes what was queued: a change may be answered
        // only once it is stored.
        if (m_queued.empty())
            return;
        Replies batch;
        batch.swap(m_queued);
        lock.unlock();
        m_write(batch);
        lock.lock();
    }
}
