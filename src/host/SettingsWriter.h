#pragma once

#include <CMPath.h>
#include <CMReply.h>
#include <VexaValue.h>

#include <QVariant>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

// One setting to store, and the reply that answers it once it is on disk.
struct SettingsChange
{
    CMPath path;
    VexaValue value;
    CMReply<QVariant> reply;
};

// The thread the settings file is written on, so that no request thread
// waits for the disk. Every change queued while a write runs is handed to
// the next write together: a burst costs one write and one sync, however
// many changes it holds.
class SettingsWriter
{
public:
    // write gets each batch, oldest change first, on the writer's thread.
    explicit SettingsWriter(std::function<void(const std::vector<SettingsChange>&)> write);
    // Writes what is still queued, then ends the thread.
    ~SettingsWriter();

    SettingsWriter(const SettingsWriter&) = delete;
    SettingsWriter& operator=(const SettingsWriter&) = delete;

    void queue(SettingsChange change);

private:
    void run();

    const std::function<void(const std::vector<SettingsChange>&)> m_write;
    std::mutex m_mutex;
    std::condition_variable m_cond;
    std::vector<SettingsChange> m_queued;
    bool m_quit = false;
    // Last: the thread starts once everything it uses exists.
    std::thread m_thread;
};
