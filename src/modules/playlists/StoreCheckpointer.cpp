#include "StoreCheckpointer.h"

#include "PlayListsLog.h"

#include <sqlite3.h>

StoreCheckpointer::StoreCheckpointer(sqlite3* db, const char* path) : m_db(db)
{
    if (sqlite3_open_v2(path, &m_own, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
        // The writing connection then keeps checkpointing as it commits.
        LOG4CPLUS_ERROR(PlayListsLog::logger(), "Unable to open the store for checkpoints: " << sqlite3_errmsg(m_own));
        sqlite3_close(m_own);
        m_own = nullptr;
        return;
    }
    sqlite3_exec(m_own, "PRAGMA synchronous=NORMAL;", nullptr, nullptr, nullptr);
    // Replaces the automatic checkpoint, which is itself a hook of this kind.
    sqlite3_wal_hook(m_db, &StoreCheckpointer::on_db_committed, this);
    m_thread = std::thread(&StoreCheckpointer::run, this);
}

StoreCheckpointer::~StoreCheckpointer()
{
    if (!m_own)
        return;
    sqlite3_wal_hook(m_db, nullptr, nullptr);
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_wake.notify_one();
    m_thread.join();
    sqlite3_close(m_own);
}

int StoreCheckpointer::on_db_committed(void* self, sqlite3*, const char*, int logPages)
{
    if (logPages >= DuePages) {
        auto* checkpointer = static_cast<StoreCheckpointer*>(self);
        {
            std::lock_guard<std::mutex> lock(checkpointer->m_mutex);
            checkpointer->m_due = true;
        }
        checkpointer->m_wake.notify_one();
    }
    return SQLITE_OK;
}

void StoreCheckpointer::run()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this]() { return m_due || m_stopping; });
        if (m_stopping)
            return;
        m_due = false;
        lock.unlock();
        // Passive: it copies what no reader still needs and never waits for
        // the writer, which goes on committing meanwhile.
        int logPages = 0;
        int copied = 0;
        const int rc = sqlite3_wal_checkpoint_v2(m_own, nullptr, SQLITE_CHECKPOINT_PASSIVE, &logPages, &copied);
        if (rc != SQLITE_OK && rc != SQLITE_BUSY)
            LOG4CPLUS_ERROR(PlayListsLog::logger(), "Store checkpoint failed: " << sqlite3_errmsg(m_own));
        LOG4CPLUS_TRACE(PlayListsLog::logger(), "checkpoint: " << copied << " of " << logPages << " log pages copied");
        lock.lock();
    }
}
