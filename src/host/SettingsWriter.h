#pragma once

#include <CMReply.h>

#include <QVariant>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

// The thread the settings file is written on, so that no request thread
// waits for the disk. Each change queues the reply that answers it once it
// is on disk; every reply queued while a write runs is handed to the next
// write together: a burst costs one write and one sync, however many
// changes it holds.
class SettingsWriter
{
public:
    using Replies = std::vector<CMReply<QVariant>>;

    // write stores the settings as they are and answers the replies, on the
    // writer's thread.
    explicit SettingsWriter(std::function<void(const Replies&)> write);
    // Writes what is still queued, then ends the thread.
    ~SettingsWriter();

    SettingsWriter(const SettingsWriter&) = delete;
    SettingsWriter& operator=(const SettingsWriter&) = delete;

    void queue(const CMReply<QVariant>& reply);

private:
    void run();

    const std::function<void(const Replies&)> m_write;
    std::mutex m_mutex;
    std::condition_variable m_cond;
    Replies m_queued;
    bool m_quit = false;
    // Last: the thread starts once everything it uses exists.
    std::thread m_thread;
};
