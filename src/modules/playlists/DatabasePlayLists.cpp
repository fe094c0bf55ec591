// The store's playlist and collection rows.

#include "Database.h"

#include "PlayListsLog.h"
#include "Sqlite3Statement.h"
#include "StoreTransaction.h"

#include <sqlite3.h>

#include <QStringList>

// Turns the GROUP_CONCAT text of a collection's members into uids.
static QList<int> commaSeparateNumberToList(const QString& text)
{
    QList<int> numbers;
    const QStringList parts = text.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        bool ok = false;
        const int number = part.toInt(&ok, 10);
        if (!ok) {
            LOG4CPLUS_ERROR(PlayListsLog::logger(), "Error parsing collections");
            continue;
        }
        numbers.append(number);
    }
    return numbers;
}

void Database::readPlayList(Sqlite3Statement* statement, PlayListRecord& record)
{
    record.uid = statement->columnInt(0);
    record.name = statement->columnText(1);
    record.shuffle = statement->columnInt(2) == 1;
    record.repeatAll = statement->columnInt(3) == 1;
    record.lastPlayedIndex = statement->columnInt(4);
    record.size = statement->columnInt(5) + 1;
}

PlayListRecord Database::getPlayQueue()
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "");
    PlayListRecord record;
    if (m_getPlayQueueStmt->step_row())
        readPlayList(m_getPlayQueueStmt, record);
    m_getPlayQueueStmt->reset();
    return record;
}

QList<PlayListRecord> Database::getPlayLists()
{
    VEXA_LOG_ENTER(TRACE, PlayListsLog::logger(), "");
    QList<PlayListRecord> records;
    while (m_getPlayListsStmt->step_row()) {
        PlayListRecord record;
        readPlayList(m_getPlayListsStmt, record);
        records.append(record);
    }
    m_getPlayListsStmt->reset();
    return records;
}

PlayListRecord Database::createPlayList(const QString& name)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "name=" << name);
    m_createPlayListStmt->bindText(1, name);
    if (!m_createPlayListStmt->run()) {
        LOG4CPLUS_ERROR(logger, "Unable to create playlist in database");
        return PlayListRecord();
    }
    // The new row: not shuffled, no repeat, nothing played, no entries.
    PlayListRecord record;
    record.uid = int(sqlite3_last_insert_rowid(m_db));
    record.name = name;
    record.shuffle = false;
    record.repeatAll = false;
    record.lastPlayedIndex = -1;
    record.size = 0;
    LOG4CPLUS_DEBUG(logger, "Created playlist uid=" << record.uid << " name=" << name);
    return record;
}

bool Database::deletePlayList(const PlayListRecord& record)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "pl uid=" << record.uid);
    StoreTransaction transaction(*this, StoreTransaction::Lock::Deferred);
    const bool deleted = deletePlayListTransaction(record);
    if (deleted) {
        transaction.commit();
        setVacuumNeeded();
    } else {
        LOG4CPLUS_ERROR(logger, "Error deleting PlayList");
    }
    return deleted;
}

bool Database::deletePlayListTransaction(const PlayListRecord& record)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    m_deletePlayListStmt->bindInt(1, record.uid);
    if (!m_deletePlayListStmt->run()) {
        LOG4CPLUS_ERROR(logger, "Error deleting PlayList: delete commad failed");
        return false;
    }
    if (sqlite3_changes(m_db) == 0) {
        LOG4CPLUS_ERROR(logger, "Error deleting PlayList: no such list in DB");
        return false;
    }
    // Entries and memberships went with the row (ON DELETE CASCADE); the items
    // that no other playlist refers to are left over.
    return cleanUnusedItems();
}

bool Database::updatePlayList(const PlayListRecord& record)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "pl=" << record.uid);
    m_updatePlayListStmt->bindText(1, record.name);
    m_updatePlayListStmt->bindInt(2, record.shuffle ? 1 : 0);
    m_updatePlayListStmt->bindInt(3, record.repeatAll ? 1 : 0);
    m_updatePlayListStmt->bindInt(4, record.lastPlayedIndex);
    m_updatePlayListStmt->bindInt(5, record.uid);
    if (!m_updatePlayListStmt->run()) {
        LOG4CPLUS_ERROR(logger, "Error updating PlayList");
        return false;
    }
    if (sqlite3_changes(m_db) == 0) {
        LOG4CPLUS_ERROR(logger, "Error updating PlayList: no such uid in DB");
        return false;
    }
    return true;
}

QList<CollectionRecord> Database::getCollections()
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "");
    QList<CollectionRecord> records;
    while (m_getCollectionsStmt->step_row()) {
        CollectionRecord record;
        record.uid = m_getCollectionsStmt->columnInt(0);
        record.name = m_getCollectionsStmt->columnText(1);
        record.playlists = commaSeparateNumberToList(m_getCollectionsStmt->columnText(2));
        records.append(record);
    }
    if (!m_getCollectionsStmt->reset()) {
        LOG4CPLUS_ERROR(logger, "Unable to fetch collections");
        return QList<CollectionRecord>();
    }
    return records;
}

CollectionRecord Database::createCollection(const QString& name)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "name=" << name);
    m_createCollectionStmt->bindText(1, name);
    if (!m_createCollectionStmt->run()) {
        LOG4CPLUS_ERROR(logger, "Unable to create collection in database");
        return CollectionRecord();
    }
    CollectionRecord record;
    record.uid = int(sqlite3_last_insert_rowid(m_db));
    record.name = name;
    LOG4CPLUS_DEBUG(logger, "Inserted collection uid=" << record.uid << " name=" << name);
    return record;
}

bool Database::deleteCollection(const CollectionRecord& record)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "uid=" << record.uid);
    m_deleteCollectionStmt->bindInt(1, record.uid);
    if (!m_deleteCollectionStmt->run()) {
        LOG4CPLUS_ERROR(logger, "Unable to delete collection uid=" << record.uid << " in database");
        return false;
    }
    if (sqlite3_changes(m_db) == 0) {
        LOG4CPLUS_WARN(logger,
                       "Unable to delete collection uid=" << record.uid << " in database: no such collection in DB");
        return false;
    }
    return true;
}

bool Database::addToCollection(const CollectionRecord& record, const int& playlistUid)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "col=" << record.uid << " pl=" << playlistUid);
    m_addToCollectionStmt->bindInt(1, record.uid);
    m_addToCollectionStmt->bindInt(2, playlistUid);
    if (!m_addToCollectionStmt->run()) {
        LOG4CPLUS_ERROR(logger, "Unable to add pl=" << playlistUid << " to collection=" << record.uid);
        return false;
    }
    LOG4CPLUS_DEBUG(logger, "Pl=" << playlistUid << " added to collection=" << record.uid);
    return true;
}

bool Database::removeFromCollection(const CollectionRecord& record, const int& playlistUid)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "col=" << record.uid << " pl=" << playlistUid);
    m_removeFromCollectionStmt->bindInt(1, record.uid);
    m_removeFromCollectionStmt->bindInt(2, playlistUid);
    if (!m_removeFromCollectionStmt->run()) {
        LOG4CPLUS_ERROR(logger, "Unable to remove pl=" << playlistUid << " from collection=" << record.uid);
        return false;
    }
    if (sqlite3_changes(m_db) == 0) {
        LOG4CPLUS_WARN(logger, "Unable to remove pl=" << playlistUid << " From collection=" << record.uid
                                                      << " in database: no such playlist in collection in DB");
        return false;
    }
    return true;
}

int Database::countPlaylists()
{
    int count = 0;
    if (m_countPlaylistsStmt->step_row())
        count = m_countPlaylistsStmt->columnInt(0);
    // The play queue is a row of its own but not a playlist of the user's.
    return m_countPlaylistsStmt->reset() ? count - 1 : 0;
}

int Database::countPlaylistsItems()
{
    int count = 0;
    if (m_countPlaylistItemsStmt->step_row())
        count = m_countPlaylistItemsStmt->columnInt(0);
    return m_countPlaylistItemsStmt->reset() ? count : 0;
}

int Database::countCollections()
{
    int count = 0;
    if (m_countCollectionsStmt->step_row())
        count = m_countCollectionsStmt->columnInt(0);
    return m_countCollectionsStmt->reset() ? count : 0;
}
