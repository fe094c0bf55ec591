// The store's entries: the dense sequence numbers of each playlist's items.

#include "Database.h"

#include "PlayListsLog.h"
#include "Sqlite3Statement.h"
#include "StoreTransaction.h"

#include <sqlite3.h>

#include <algorithm>

namespace {

// Upper bound of a sequence-number range that reaches the end of any playlist.
const int kLastSequenceNumber = 2147483647;

} // namespace

void Database::readItem(Sqlite3Statement* statement, VexaPlayListItem& item)
{
    item.setSequenceNumber(statement->columnInt(0));
    item.setUid(statement->columnInt(1));
    item.setTitle(statement->columnText(2));
    item.setArtist(statement->columnText(3));
    item.setAlbum(statement->columnText(4));
    item.setArtworkUrl(statement->columnText(5));
    item.setGenre(statement->columnText(6));
    item.setDurationSeconds(statement->columnInt(7));
    item.setUrl(statement->columnText(8));
    item.setServiceId(statement->columnText(9));
    item.setVexaRoles(statement->columnText(10));
}

QList<VexaPlayListItem> Database::getItems(const PlayListRecord& record, int from, int to)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "pl=" << record.uid << " from=" << from << " to=" << to);
    QList<VexaPlayListItem> items;
    m_getItemsStmt->bindInt(1, record.uid);
    m_getItemsStmt->bindInt(2, from);
    m_getItemsStmt->bindInt(3, to);
    while (m_getItemsStmt->step_row()) {
        VexaPlayListItem item;
        readItem(m_getItemsStmt, item);
        items.append(item);
    }
    if (!m_getItemsStmt->reset())
        LOG4CPLUS_ERROR(logger, "Error fetching PlayList items from DB");
    return items;
}

VexaPlayListItem Database::getItemByUid(int uid)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "uid=" << uid);
    VexaPlayListItem item;
    m_getItemByUidStmt->bindInt(1, uid);
    // An item shared by several playlists has a row for each; the first wins.
    if (m_getItemByUidStmt->step_row())
        readItem(m_getItemByUidStmt, item);
    if (!m_getItemByUidStmt->reset())
        LOG4CPLUS_ERROR(logger, "Error fetching item by UID");
    return item;
}

int Database::getNextSequenceNumber(const PlayListRecord& record)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "pl=" << record.uid);
    m_getNextSequenceNumberStmt->bindInt(1, record.uid);
    int next = -1;
    if (m_getNextSequenceNumberStmt->step_row()) {
        next = m_getNextSequenceNumberStmt->columnInt(0);
        if (!m_getNextSequenceNumberStmt->reset())
            LOG4CPLUS_ERROR(logger, "Error resetting next sequence number stmt");
    } else {
        LOG4CPLUS_ERROR(logger, "Error fetching the next sequenceNumber");
        m_getNextSequenceNumberStmt->reset();
    }
    return next;
}

int Database::addItemsNextSequenceNumber(const PlayListRecord& record, const VexaPlayListAddPosition::Enum& position)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    if (record.size < 1) {
        // Every position appends to an empty playlist.
        LOG4CPLUS_TRACE(logger, "playlist is empty");
        const int next = getNextSequenceNumber(record);
        LOG4CPLUS_TRACE(logger, "nextSequenceNumber: " << next);
        return next;
    }
    LOG4CPLUS_TRACE(logger, "playlist is not empty");
    const int last = record.lastPlayedIndex;
    LOG4CPLUS_TRACE(logger, "lastSeqNum: " << last);
    switch (int(position)) {
    case VexaPlayListAddPosition::Now:
    case VexaPlayListAddPosition::Next:
        // Removing the last entry while it was the last played one leaves
        // the play position past the end: new entries then go to the end,
        // where they keep the numbering dense, rather than beyond it.
        return last < 0 || last + 1 > record.size ? getNextSequenceNumber(record) : last + 1;
    case VexaPlayListAddPosition::Append:
        return getNextSequenceNumber(record);
    default:
        return -1;
    }
}

int Database::addItems(const PlayListRecord& record, VexaPlayListAddPosition::Enum position,
                       const QList<VexaPlayListItem>& items, int* added)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    // Immediate: the count below and the inserts must see the same store.
    StoreTransaction transaction(*this, StoreTransaction::Lock::Immediate);
    VEXA_LOG_ENTER(TRACE, logger, "pl: " << record.uid << " pl.size(): " << record.size << " position: "
                                       << VexaPlayListAddPosition::toString(position)
                                       << " items.size(): " << items.size());
    printItems(record);

    const QList<VexaPlayListItem> toAdd = items.mid(0, itemsWithinLimit(items.size()));
    if (added)
        *added = toAdd.size();
    if (toAdd.isEmpty()) {
        LOG4CPLUS_ERROR(logger, "Error adding playlist items: database reached limit!");
        return -2;
    }

    const int first = addItemsNextSequenceNumber(record, position);
    if (first >= 0) {
        bool placed = true;
        if (record.size > first) {
            placed = offsetItemsFromTransaction(record, first, toAdd.size());
            if (!placed)
                LOG4CPLUS_ERROR(logger, "Unable to move item block before adding items");
        }
        if (placed && addItemsFromSequenceNumber(record, first, toAdd)) {
            transaction.commit();
            return first;
        }
    }

    LOG4CPLUS_ERROR(logger, "Error adding items to list");
    return -1;
}

int Database::itemsWithinLimit(int count)
{
    const int dbItemsCount = countPlaylistsItems();
    // The limit truncates the request to the room that is left. A negative
    // room (the limit was lowered below what is stored) takes the whole list,
    // as a slice with a negative length does; a limit of 0 means none.
    const int room = m_itemsLimit - dbItemsCount;
    const int within = m_itemsLimit != 0 && room >= 0 ? qMin(count, room) : count;
    LOG4CPLUS_TRACE(PlayListsLog::logger(), "dbItemsCount: " << dbItemsCount << ", addedItemsCount: " << within
                                                             << ", limit: " << m_itemsLimit);
    return within;
}

bool Database::addItemsFromSequenceNumber(const PlayListRecord& record, const int& first,
                                          const QList<VexaPlayListItem>& items)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    for (int k = 0; k < items.size(); ++k) {
        const VexaPlayListItem& item = items.at(k);
        // Every entry gets an item row of its own, even for a stored track.
        m_insertItemStmt->bindText(1, item.title());
        m_insertItemStmt->bindText(2, item.artist());
        m_insertItemStmt->bindText(3, item.album());
        m_insertItemStmt->bindText(4, item.artworkUrl());
        m_insertItemStmt->bindText(5, item.genre());
        m_insertItemStmt->bindInt(6, item.durationSeconds());
        m_insertItemStmt->bindText(7, item.url());
        m_insertItemStmt->bindText(8, item.serviceId());
        m_insertItemStmt->bindText(9, item.vexaRoles());
        if (!m_insertItemStmt->run()) {
            LOG4CPLUS_ERROR(logger, "Error inserting item into DB");
            return false;
        }
        const int uid = int(sqlite3_last_insert_rowid(m_db));
        LOG4CPLUS_TRACE(logger, "Inserted item into DB with uid " << uid);

        m_insertPlayListItemStmt->bindInt(1, record.uid);
        m_insertPlayListItemStmt->bindInt(2, uid);
        m_insertPlayListItemStmt->bindInt(3, first + k);
        if (!m_insertPlayListItemStmt->run()) {
            LOG4CPLUS_ERROR(logger, "Error inserting item into playlist DB");
            return false;
        }
    }
    return true;
}

bool Database::shiftSequenceNumbers(const PlayListRecord& record, int from, int to, int delta)
{
    m_moveItem1Stmt->bindInt(1, record.uid);
    m_moveItem1Stmt->bindInt(2, from);
    m_moveItem1Stmt->bindInt(3, to);
    m_moveItem1Stmt->bindInt(4, delta);
    return m_moveItem1Stmt->run();
}

bool Database::offsetItemsFromTransaction(const PlayListRecord& record, int from, int offset)
{
    // UNIQUE(playlist, sequenceNumber) is checked after every row, so the
    // block is parked above every number in use and then brought down by
    // the parking distance, a net shift of offset.
    const int size = record.size;
    return shiftSequenceNumbers(record, from, size, offset + size + 1)
        && shiftSequenceNumbers(record, size, kLastSequenceNumber, -(size + 1));
}

bool Database::moveItem(const PlayListRecord& record, int from, int to)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "pl=" << record.uid << " from=" << from << " to=" << to);
    StoreTransaction transaction(*this, StoreTransaction::Lock::Deferred);
    const bool moved = moveItemTransaction(record, from, to);
    if (moved)
        transaction.commit();
    else
        LOG4CPLUS_ERROR(logger, "Error moving PlayListItem");
    return moved;
}

bool Database::moveItemTransaction(const PlayListRecord& record, int from, int to)
{
    const int size = record.size;
    const int low = qMin(from, to);
    const int high = qMax(from, to);
    const int dir = from > to ? -1 : 1;
    // Park the whole block low..high beyond the end; the moved entry lands
    // on its target; the rest of the block comes back one place nearer to
    // where the moved entry was.
    return shiftSequenceNumbers(record, low, high, size)
        && shiftSequenceNumbers(record, from + size, from + size, to - from - size)
        && shiftSequenceNumbers(record, low + size, high + size, -(dir + size));
}

int Database::removeItemsHelper(const PlayListRecord& record, int from, int to)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    LOG4CPLUS_TRACE(logger, "Remove partial from=" << from << " to=" << to);
    m_deletePlayListItemStmt->bindInt(1, record.uid);
    m_deletePlayListItemStmt->bindInt(2, from);
    m_deletePlayListItemStmt->bindInt(3, to);
    if (!m_deletePlayListItemStmt->run()) {
        LOG4CPLUS_ERROR(logger, "Error removing partial items from list");
        return -1;
    }
    return sqlite3_changes(m_db);
}

int Database::removeItems(const PlayListRecord& record, const QList<int>& indices)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "pl=" << record.uid << " indices=" << indices);
    StoreTransaction transaction(*this, StoreTransaction::Lock::Immediate);

    if (indices.isEmpty())
        PlayListsLog::fatalStop(logger, QStringLiteral("Unable to remove items: the index list is empty"));

    // Consecutive ascending indices are deleted as one range.
    int total = 0;
    int start = indices.first();
    int previous = start;
    for (int i = 1; i < indices.size(); ++i) {
        const int index = indices.at(i);
        if (index == previous + 1) {
            previous = index;
            continue;
        }
        total += removeItemsHelper(record, start, previous);
        start = index;
        previous = index;
    }
    total += removeItemsHelper(record, start, previous);

    bool ok = true;
    if (total != indices.size()) {
        LOG4CPLUS_ERROR(logger, "Unable to remove all item indices");
        ok = false;
    }

    if (ok)
        ok = cleanUnusedItems();

    if (ok && !closeGapsTransaction(record, indices)) {
        LOG4CPLUS_ERROR(logger, "Unable to restore sequence numbers");
        ok = false;
    }

    if (!ok) {
        LOG4CPLUS_ERROR(logger, "Error removing items from list");
        return -1;
    }

    transaction.commit();
    setVacuumNeeded();
    return total;
}

bool Database::closeGapsTransaction(const PlayListRecord& record, const QList<int>& removed)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    const int first = removed.first();
    if (logger.isEnabledFor(log4cplus::TRACE_LOG_LEVEL)) {
        const QList<VexaPlayListItem> rest = getItems(record, first, record.size);
        for (int i = 0; i < rest.size(); ++i)
            LOG4CPLUS_TRACE(logger, "update seq: uid=" << rest.at(i).uid() << " old=" << rest.at(i).sequenceNumber()
                                                       << " new=" << first + i);
    }
    // The entries from the first index as given on are numbered afresh from
    // it (gaps in front of it stay). They are parked beyond every number in
    // use, then each block between two gaps comes back down by the parking
    // distance and the number of entries removed before it, so no number is
    // ever taken twice: one statement per block, not one per entry.
    QList<int> gaps;
    for (int index : removed) {
        if (index >= first)
            gaps.append(index);
    }
    std::sort(gaps.begin(), gaps.end());
    const int parking = record.size + 1;
    if (!shiftSequenceNumbers(record, first, kLastSequenceNumber - parking, parking))
        return false;
    int removedBefore = 0;
    for (int i = 0; i < gaps.size(); ++i) {
        ++removedBefore;
        const int blockFirst = gaps.at(i) + 1;
        const int blockLast = i + 1 < gaps.size() ? gaps.at(i + 1) - 1 : record.size - 1;
        if (blockFirst <= blockLast
            && !shiftSequenceNumbers(record, blockFirst + parking, blockLast + parking, -(parking + removedBefore)))
            return false;
    }
    return true;
}

bool Database::cleanUnusedItems()
{
    if (m_cleanUnusedItemsStmt->run())
        return true;
    LOG4CPLUS_ERROR(PlayListsLog::logger(), "Unable to clean up unused items");
    return false;
}

bool Database::clearItems(const PlayListRecord& record)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "pl=" << record.uid);
    if (removeItemsHelper(record, 0, kLastSequenceNumber) < 0) {
        LOG4CPLUS_ERROR(logger, "Unable to clear playList " << record.uid);
        return false;
    }
    // Unused rows left by a failed clean-up go with the next one.
    cleanUnusedItems();
    setVacuumNeeded();
    return true;
}

void Database::printItems(const PlayListRecord& record)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    // A full read of the playlist is worth it only when someone sees it.
    if (!logger.isEnabledFor(log4cplus::TRACE_LOG_LEVEL))
        return;
    const QList<VexaPlayListItem> items = getItems(record, 0, record.size);
    for (const VexaPlayListItem& item : items)
        LOG4CPLUS_TRACE(logger, "uid: " << item.uid() << " seqNum: " << item.sequenceNumber()
                                        << " name: " << item.title());
}
