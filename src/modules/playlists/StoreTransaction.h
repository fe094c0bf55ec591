#pragma once

#include "Database.h"

// A transaction of the store that rolls back unless it was committed, so
// that no way out of a store operation leaves half of its work behind.
class StoreTransaction
{
public:
    // Immediate takes the write lock at once, for work that reads before it writes.
    enum class Lock { Deferred, Immediate };

    StoreTransaction(Database& db, Lock lock) : m_db(db)
    {
        if (lock == Lock::Immediate)
            m_db.beginImmediateTransaction();
        else
            m_db.beginTransaction();
    }
    ~StoreTransaction()
    {
        if (!m_committed)
            m_db.rollbackTransaction();
    }
    StoreTransaction(const StoreTransaction&) = delete;
    StoreTransaction& operator=(const StoreTransaction&) = delete;

    void commit()
    {
        m_db.commitTransaction();
        m_committed = true;
    }

private:
    Database& m_db;
    bool m_committed = false;
};
