#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

struct sqlite3;

// Copies the store's write-ahead log into its file on a thread of its own,
// with a connection of its own, instead of in the commit that filled the log:
// a command that wrote a large playlist answers without waiting for tens of
// megabytes to be copied and synced. The log is also the only place the
// commits since the last checkpoint are synced to, so that what a power cut
// may lose stays the same.
class StoreCheckpointer
{
public:
    // Log pages after a commit from which a checkpoint is due: SQLite's own default.
    static constexpr int DuePages = 1000;

    // Takes over checkpointing from the connection db, which writes the file path.
    StoreCheckpointer(sqlite3* db, const char* path);
    // Finishes a checkpoint under way; the connection's close does the last.
    ~StoreCheckpointer();
    StoreCheckpointer(const StoreCheckpointer&) = delete;
    StoreCheckpointer& operator=(const StoreCheckpointer&) = delete;

private:
    static int on_db_committed(void* self, sqlite3* db, const char* name, int logPages);
    void run();

    sqlite3* m_db;
    sqlite3* m_own = nullptr;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_due = false;
    bool m_stopping = false;
    std::thread m_thread;
};
