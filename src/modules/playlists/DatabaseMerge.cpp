// The store's whole-playlist merges: a playlist's entries added to another in
// a few set statements, however many there are, where adding them item by
// item would cost two inserts per entry.

#include "Database.h"

#include "PlayListsLog.h"
#include "Sqlite3Statement.h"
#include "StoreTransaction.h"

int Database::addItemsOf(const PlayListRecord& record, const PlayListRecord& source,
                         VexaPlayListAddPosition::Enum position, bool move, int* added)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    // Immediate: the count below and the writes must see the same store.
    StoreTransaction transaction(*this, StoreTransaction::Lock::Immediate);
    VEXA_LOG_ENTER(TRACE, logger, "pl: " << record.uid << " pl.size(): " << record.size << " position: "
                                       << VexaPlayListAddPosition::toString(position) << " source: " << source.uid
                                       << " source.size(): " << source.size << " move: " << move);
    const int count = itemsWithinLimit(source.size);
    if (added)
        *added = count;
    if (count == 0) {
        LOG4CPLUS_ERROR(logger, "Error adding playlist items: database reached limit!");
        return -2;
    }

    const int first = addItemsNextSequenceNumber(record, position);
    if (first < 0 || (record.size > first && !offsetItemsFromTransaction(record, first, count))) {
        LOG4CPLUS_ERROR(logger, "Error adding items to list");
        return -1;
    }
    bool done = false;
    if (move) {
        // The entries change playlist and number; their items stay as they are.
        m_moveEntriesStmt->bindInt(1, record.uid);
        m_moveEntriesStmt->bindInt(2, first);
        m_moveEntriesStmt->bindInt(3, source.uid);
        m_moveEntriesStmt->bindInt(4, count);
        done = m_moveEntriesStmt->run();
    } else {
        // Every copy gets an item row of its own. The copies are inserted in
        // the source's order, each above every uid in use, so ranking them by
        // uid gives their places.
        int last = -1;
        if (m_lastItemUidStmt->step_row())
            last = m_lastItemUidStmt->columnInt(0);
        done = m_lastItemUidStmt->reset() && last >= 0;
        m_copyItemsStmt->bindInt(1, source.uid);
        m_copyItemsStmt->bindInt(2, count);
        done = done && m_copyItemsStmt->run();
        m_linkCopiedItemsStmt->bindInt(1, record.uid);
        m_linkCopiedItemsStmt->bindInt(2, first);
        m_linkCopiedItemsStmt->bindInt(3, last);
        done = done && m_linkCopiedItemsStmt->run();
    }
    if (!done) {
        LOG4CPLUS_ERROR(logger, "Error adding items to list");
        return -1;
    }
    transaction.commit();
    return first;
}
