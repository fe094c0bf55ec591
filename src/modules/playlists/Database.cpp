#include "Database.h"

#include "PlayListsLog.h"
#include "Sqlite3Statement.h"

#include <sqlite3.h>

#include <QDir>
#include <QElapsedTimer>
#include <QStringList>

#include <algorithm>

namespace {

const char* const kDatabaseDirectory = "data-rw/playlists/";
const char* const kDatabaseFile = "data-rw/playlists/playlists.sqlite";

// Upper bound of a sequence-number range that reaches the end of any playlist.
const int kLastSequenceNumber = 2147483647;

// How long a write waits for another connection's lock before it fails.
const int kBusyTimeoutMs = 5000;

} // namespace

// Receives SQLite's own error log, where the library still accepts the
// setting when the store registers it.
static void sqliteErrorLogCallback(void*, int code, const char* message)
{
    LOG4CPLUS_ERROR(PlayListsLog::logger(), "SQLite error " << code << ": " << message);
}

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

Database::Database(int itemsLimit, bool vacuumNeeded)
    : QObject(nullptr)
    , m_db(nullptr)
    , m_itemsLimit(itemsLimit)
    , m_vacuumFlag(vacuumNeeded)
    , m_getPlayQueueStmt(nullptr)
    , m_getPlayListsStmt(nullptr)
    , m_createPlayListStmt(nullptr)
    , m_deletePlayListStmt(nullptr)
    , m_updatePlayListStmt(nullptr)
    , m_getItemsStmt(nullptr)
    , m_moveItem1Stmt(nullptr)
    , m_getNextSequenceNumberStmt(nullptr)
    , m_insertItemStmt(nullptr)
    , m_insertPlayListItemStmt(nullptr)
    , m_deletePlayListItemStmt(nullptr)
    , m_cleanUnusedItemsStmt(nullptr)
    , m_getItemByUidStmt(nullptr)
    , m_getCollectionsStmt(nullptr)
    , m_createCollectionStmt(nullptr)
    , m_addToCollectionStmt(nullptr)
    , m_removeFromCollectionStmt(nullptr)
    , m_deleteCollectionStmt(nullptr)
    , m_countPlaylistsStmt(nullptr)
    , m_countPlaylistItemsStmt(nullptr)
    , m_countCollectionsStmt(nullptr)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();

    const QString directory = QString::fromLatin1(kDatabaseDirectory);
    if (!QDir(directory).exists() && !QDir().mkpath(directory))
        PlayListsLog::fatalStop(logger, QStringLiteral("Unable to create directory for PlayList database file"));

    const int rc = sqlite3_open(kDatabaseFile, &m_db);
    if (rc != SQLITE_OK || !m_db) {
        PlayListsLog::fatalStop(
            logger, QStringLiteral("Unable to open PlayList database file: ") + QString::fromUtf8(sqlite3_errstr(rc)));
    }

    // Write-ahead logging: a reader outside the module (a backup, the sqlite3
    // shell) never makes one of its writes fail, and a writer outside waits
    // its turn instead of failing one. Commits reach the disk at checkpoints:
    // a power cut may lose the last commits, never the store's consistency.
    sqlite3_busy_timeout(m_db, kBusyTimeoutMs);
    execute("PRAGMA journal_mode=WAL;");
    execute("PRAGMA synchronous=NORMAL;");

    // Vacuuming needs no schema, and doing it before anything else is prepared
    // keeps it from competing with open statements.
    vacuum();

    execute("PRAGMA foreign_keys=1;");

    // SQLite takes this setting only before the library is initialised, which
    // the open above has already done unless the process initialised it
    // elsewhere; the result is therefore not checked.
    sqlite3_config(SQLITE_CONFIG_LOG, sqliteErrorLogCallback, nullptr);

    ensureTablesExist();
    prepareStatements();
}

Database::~Database()
{
    // The statements are never finalized; close_v2 leaves the connection to
    // SQLite until they are gone.
    if (m_db)
        sqlite3_close_v2(m_db);
}

int Database::execute(const char* sql)
{
    return sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr);
}

int Database::beginTransaction()
{
    return execute("BEGIN;");
}

int Database::beginImmediateTransaction()
{
    return execute("BEGIN IMMEDIATE;");
}

void Database::commitTransaction()
{
    // No other connection uses the file, so a busy or locked commit clears
    // as soon as SQLite has finished with it.
    int rc = execute("COMMIT;");
    while (rc > SQLITE_ERROR)
        rc = execute("COMMIT;");
    if (rc == SQLITE_ERROR)
        LOG4CPLUS_ERROR(PlayListsLog::logger(), "Commit transaction failed");
}

int Database::rollbackTransaction()
{
    return execute("ROLLBACK;");
}

void Database::ensureTablesExist()
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    PLAYLISTS_LOG_ENTER(logger, "");
    createTableHelper("CREATE TABLE IF NOT EXISTS playlists (  uid INTEGER PRIMARY KEY,  name TEXT NOT NULL,  shuffle INTEGER NOT NULL DEFAULT 0,  repeatAll INTEGER NOT NULL DEFAULT 0,  lastPlayedIndex INTEGER NOT NULL DEFAULT 0);", "playlists");
    createTableHelper("CREATE TABLE IF NOT EXISTS items (  uid INTEGER PRIMARY KEY,  title TEXT NOT NULL,  artist TEXT,  album TEXT,  artworkUrl TEXT,  genre TEXT,  durationSeconds INTEGER,  url TEXT NOT NULL,  serviceId TEXT NOT NULL,  vexaRoles TEXT);CREATE INDEX IF NOT EXISTS itemUrlIndex ON items(url);", "items");
    createTableHelper("CREATE TABLE IF NOT EXISTS collections (  uid INTEGER PRIMARY KEY,  name TEXT NOT NULL);", "collections");
    createTableHelper("CREATE TABLE IF NOT EXISTS playlists_items (  playlist INTEGER NOT NULL,  item INTEGER NOT NULL,  sequenceNumber INTEGER NOT NULL,  PRIMARY KEY(playlist, item, sequenceNumber),  FOREIGN KEY(playlist) REFERENCES playlists(uid)    ON DELETE CASCADE    ON UPDATE CASCADE,  FOREIGN KEY(item) REFERENCES items(uid)    ON DELETE RESTRICT    ON UPDATE CASCADE,  UNIQUE(playlist,sequenceNumber));", "playlists-items");
    createTableHelper("CREATE TABLE IF NOT EXISTS collections_playlists (  collection INTEGER NOT NULL,  playlist INTEGER NOT NULL,  PRIMARY KEY(collection, playlist),  FOREIGN KEY(collection) REFERENCES collections(uid)    ON DELETE CASCADE    ON UPDATE CASCADE,  FOREIGN KEY(playlist) REFERENCES playlists(uid)    ON DELETE CASCADE    ON UPDATE CASCADE);", "collections-playlists");
    createTableHelper("INSERT OR IGNORE INTO playlists(uid, name, lastPlayedIndex)  VALUES(0, 'PlayQueue', -1);", "createplayqueue");
    // Finds the entries of an item: the foreign-key check of every deleted
    // item row and getItemByUid would otherwise scan every entry.
    createTableHelper("CREATE INDEX IF NOT EXISTS playlistsItemsItemIndex ON playlists_items(item);", "playlists-items-item-index");
    LOG4CPLUS_TRACE(logger, "PlayList tables exist");
}

void Database::createTableHelper(const char* sql, const char* label)
{
    char* error = nullptr;
    const int rc = sqlite3_exec(m_db, sql, nullptr, nullptr, &error);
    if (rc != SQLITE_OK) {
        const QString message = QStringLiteral("Unable to create table ") + QString::fromUtf8(label)
                                + QStringLiteral(": ") + QString::fromUtf8(error ? error : sqlite3_errstr(rc));
        sqlite3_free(error);
        PlayListsLog::fatalStop(PlayListsLog::logger(), message);
    }
}

void Database::prepareStatements()
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    PLAYLISTS_LOG_ENTER(logger, "");
    m_getPlayQueueStmt = Sqlite3Statement::create(m_db, QStringLiteral("SELECT  uid, name, shuffle, repeatAll, lastPlayedIndex,    (SELECT coalesce(MAX(sequenceNumber), -1) FROM playlists_items WHERE playlist=playlists.uid) AS size  FROM playlists  WHERE uid = 0  ORDER BY name ASC"),
                                                  QStringLiteral("getPlayQueue"));
    m_getPlayListsStmt = Sqlite3Statement::create(m_db, QStringLiteral("SELECT  uid, name, shuffle, repeatAll, lastPlayedIndex,    (SELECT coalesce(MAX(sequenceNumber), -1) FROM playlists_items WHERE playlist=playlists.uid) AS size  FROM playlists  WHERE uid > 0  ORDER BY name ASC"),
                                                  QStringLiteral("getPlayLists"));
    m_createPlayListStmt = Sqlite3Statement::create(m_db, QStringLiteral("INSERT INTO playlists(name, shuffle, repeatAll, lastPlayedIndex)  VALUES(?1, 0, 0, -1);"),
                                                    QStringLiteral("createPlayList"));
    m_deletePlayListStmt = Sqlite3Statement::create(m_db, QStringLiteral("DELETE FROM playlists  WHERE uid=?1  AND uid > 0;"),
                                                    QStringLiteral("deletePlayList"));
    m_updatePlayListStmt = Sqlite3Statement::create(m_db, QStringLiteral("UPDATE playlists SET  name=?1, shuffle=?2, repeatAll=?3, lastPlayedIndex=?4  WHERE uid=?5"),
                                                    QStringLiteral("updatePlayList"));
    m_getItemsStmt = Sqlite3Statement::create(m_db, QStringLiteral("SELECT  nm.sequenceNumber,  uid, title, artist, album, artworkUrl, genre, durationSeconds, url, serviceId,  vexaRoles  FROM (    SELECT item, sequenceNumber      FROM playlists_items      WHERE playlist = ?1      AND sequenceNumber >= ?2 AND sequenceNumber <= ?3    ) AS nm    INNER JOIN items ON nm.item = items.uid  ORDER BY nm.sequenceNumber ASC"), QStringLiteral("getItems"));
    m_moveItem1Stmt = Sqlite3Statement::create(m_db, QStringLiteral("UPDATE playlists_items  SET sequenceNumber = sequenceNumber + ?4  WHERE playlist = ?1 AND sequenceNumber >= ?2 AND sequenceNumber <= ?3;"), QStringLiteral("moveItem1"));
    m_getNextSequenceNumberStmt = Sqlite3Statement::create(m_db, QStringLiteral("SELECT COALESCE(MAX(sequenceNumber), -1) + 1  FROM playlists_items  WHERE playlist = ?1;"),
                                                           QStringLiteral("getNextSequenceNumber"));
    m_insertItemStmt = Sqlite3Statement::create(m_db, QStringLiteral("INSERT INTO items(title, artist, album, artworkUrl, genre, durationSeconds, url, serviceId,  vexaRoles  )  VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9);"),
                                                QStringLiteral("insertItem"));
    m_insertPlayListItemStmt = Sqlite3Statement::create(m_db, QStringLiteral("INSERT INTO playlists_items(playlist, item, sequenceNumber)  VALUES (?1, ?2, ?3);"),
                                                        QStringLiteral("insertPlayListItem"));
    m_deletePlayListItemStmt = Sqlite3Statement::create(m_db, QStringLiteral("DELETE FROM playlists_items  WHERE playlist = ?1 AND sequenceNumber >= ?2 AND sequenceNumber <= ?3"),
                                                        QStringLiteral("deletePlayListItem"));
    m_cleanUnusedItemsStmt = Sqlite3Statement::create(m_db, QStringLiteral("DELETE FROM items  WHERE uid NOT IN (    SELECT item FROM playlists_items  )"),
                                                      QStringLiteral("cleanUnusedItems"));
    m_getItemByUidStmt = Sqlite3Statement::create(m_db, QStringLiteral("SELECT  sequenceNumber,  uid, title, artist, album, artworkUrl, genre, durationSeconds, url, serviceId,  vexaRoles  FROM items JOIN playlists_items ON items.uid = playlists_items.item  where uid = ?1;"),
                                                  QStringLiteral("getItemByUid"));
    m_getCollectionsStmt = Sqlite3Statement::create(m_db, QStringLiteral("SELECT  uid, name, GROUP_CONCAT(playlist)  FROM collections LEFT OUTER JOIN collections_playlists ON (uid = collection)  GROUP BY uid   ORDER BY name ASC;"),
                                                    QStringLiteral("getCollections"));
    m_createCollectionStmt = Sqlite3Statement::create(m_db, QStringLiteral("INSERT INTO collections(name)  VALUES (?1);"),
                                                      QStringLiteral("createCollection"));
    m_addToCollectionStmt = Sqlite3Statement::create(m_db, QStringLiteral("INSERT INTO collections_playlists(collection, playlist)  VALUES(?1, ?2);"),
                                                     QStringLiteral("addToCollection"));
    m_removeFromCollectionStmt = Sqlite3Statement::create(m_db, QStringLiteral("DELETE FROM collections_playlists  WHERE collection=?1 AND playlist=?2;"),
                                                          QStringLiteral("removeFromCollection"));
    m_deleteCollectionStmt = Sqlite3Statement::create(m_db, QStringLiteral("DELETE FROM collections  WHERE uid=?1;"),
                                                      QStringLiteral("deleteCollection"));
    m_countPlaylistsStmt = Sqlite3Statement::create(m_db, QStringLiteral("SELECT Count(*) FROM playlists"),
                                                    QStringLiteral("countPlaylists"));
    m_countPlaylistItemsStmt = Sqlite3Statement::create(m_db, QStringLiteral("SELECT Count(*) FROM items"),
                                                        QStringLiteral("countPlaylistItems"));
    m_countCollectionsStmt = Sqlite3Statement::create(m_db, QStringLiteral("SELECT Count(*) FROM collections"),
                                                      QStringLiteral("countCollections"));
    LOG4CPLUS_TRACE(logger, "PlayList statements prepared");
}

void Database::clearDatabase()
{
    execute("DELETE FROM playlists");
    execute("DELETE FROM items");
    execute("DELETE FROM collections");
    execute("DELETE FROM playlists_items");
    execute("DELETE FROM collections_playlists");
    ensureTablesExist();
}

void Database::setVacuumNeeded()
{
    if (m_vacuumFlag)
        return;
    emit vacuumNeeded(true);
    m_vacuumFlag = true;
}

void Database::vacuum()
{
    if (!m_vacuumFlag)
        return;
    QElapsedTimer timer;
    timer.start();
    execute("VACUUM;");
    LOG4CPLUS_INFO(PlayListsLog::logger(), "sqlite vacuum duration: " << timer.elapsed() << " ms");
    emit vacuumNeeded(false);
    m_vacuumFlag = false;
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

PlayListRecord Database::getPlayQueue()
{
    PLAYLISTS_LOG_ENTER(PlayListsLog::logger(), "");
    PlayListRecord record;
    if (m_getPlayQueueStmt->step_row())
        readPlayList(m_getPlayQueueStmt, record);
    m_getPlayQueueStmt->reset();
    return record;
}

QList<PlayListRecord> Database::getPlayLists()
{
    PLAYLISTS_LOG_ENTER(PlayListsLog::logger(), "");
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
    PLAYLISTS_LOG_ENTER(logger, "name=" << name);
    m_createPlayListStmt->bindText(1, name);
    m_createPlayListStmt->step();
    if (!m_createPlayListStmt->reset()) {
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
    PLAYLISTS_LOG_ENTER(logger, "pl uid=" << record.uid);
    beginTransaction();
    const bool deleted = deletePlayListTransaction(record);
    if (deleted) {
        commitTransaction();
        setVacuumNeeded();
    } else {
        LOG4CPLUS_ERROR(logger, "Error deleting PlayList");
        rollbackTransaction();
    }
    return deleted;
}

bool Database::deletePlayListTransaction(const PlayListRecord& record)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    m_deletePlayListStmt->bindInt(1, record.uid);
    m_deletePlayListStmt->step();
    if (!m_deletePlayListStmt->reset()) {
        LOG4CPLUS_ERROR(logger, "Error deleting PlayList: delete commad failed");
        return false;
    }
    if (sqlite3_changes(m_db) == 0) {
        LOG4CPLUS_ERROR(logger, "Error deleting PlayList: no such list in DB");
        return false;
    }
    // Entries and memberships went with the row (ON DELETE CASCADE); the items
    // that no other playlist refers to are left over.
    m_cleanUnusedItemsStmt->step();
    if (!m_cleanUnusedItemsStmt->reset()) {
        LOG4CPLUS_ERROR(logger, "Unable to clean up unused items");
        return false;
    }
    return true;
}

bool Database::updatePlayList(const PlayListRecord& record)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    PLAYLISTS_LOG_ENTER(logger, "pl=" << record.uid);
    m_updatePlayListStmt->bindText(1, record.name);
    m_updatePlayListStmt->bindInt(2, record.shuffle ? 1 : 0);
    m_updatePlayListStmt->bindInt(3, record.repeatAll ? 1 : 0);
    m_updatePlayListStmt->bindInt(4, record.lastPlayedIndex);
    m_updatePlayListStmt->bindInt(5, record.uid);
    m_updatePlayListStmt->step();
    if (!m_updatePlayListStmt->reset()) {
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
    PLAYLISTS_LOG_ENTER(logger, "");
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
    PLAYLISTS_LOG_ENTER(logger, "name=" << name);
    m_createCollectionStmt->bindText(1, name);
    m_createCollectionStmt->step();
    if (!m_createCollectionStmt->reset()) {
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
    PLAYLISTS_LOG_ENTER(logger, "uid=" << record.uid);
    m_deleteCollectionStmt->bindInt(1, record.uid);
    m_deleteCollectionStmt->step();
    if (!m_deleteCollectionStmt->reset()) {
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
    PLAYLISTS_LOG_ENTER(logger, "col=" << record.uid << " pl=" << playlistUid);
    m_addToCollectionStmt->bindInt(1, record.uid);
    m_addToCollectionStmt->bindInt(2, playlistUid);
    m_addToCollectionStmt->step();
    if (!m_addToCollectionStmt->reset()) {
        LOG4CPLUS_ERROR(logger, "Unable to add pl=" << playlistUid << " to collection=" << record.uid);
        return false;
    }
    LOG4CPLUS_DEBUG(logger, "Pl=" << playlistUid << " added to collection=" << record.uid);
    return true;
}

bool Database::removeFromCollection(const CollectionRecord& record, const int& playlistUid)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    PLAYLISTS_LOG_ENTER(logger, "col=" << record.uid << " pl=" << playlistUid);
    m_removeFromCollectionStmt->bindInt(1, record.uid);
    m_removeFromCollectionStmt->bindInt(2, playlistUid);
    m_removeFromCollectionStmt->step();
    if (!m_removeFromCollectionStmt->reset()) {
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

QList<VexaPlayListItem> Database::getItems(const PlayListRecord& record, int from, int to)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    PLAYLISTS_LOG_ENTER(logger, "pl=" << record.uid << " from=" << from << " to=" << to);
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
    PLAYLISTS_LOG_ENTER(logger, "uid=" << uid);
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
    PLAYLISTS_LOG_ENTER(logger, "pl=" << record.uid);
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
    beginImmediateTransaction();
    PLAYLISTS_LOG_ENTER(logger, "pl: " << record.uid << " pl.size(): " << record.size << " position: "
                                       << VexaPlayListAddPosition::toString(position)
                                       << " items.size(): " << items.size());
    printItems(record);

    const int dbItemsCount = countPlaylistsItems();
    // The limit truncates the request to the room that is left. A negative
    // room (the limit was lowered below what is stored) takes the whole list,
    // as a slice with a negative length does; a limit of 0 means none.
    QList<VexaPlayListItem> toAdd = items;
    if (m_itemsLimit != 0) {
        const int room = m_itemsLimit - dbItemsCount;
        if (room >= 0)
            toAdd = items.mid(0, room);
    }
    if (added)
        *added = toAdd.size();
    LOG4CPLUS_TRACE(logger, "dbItemsCount: " << dbItemsCount << ", addedItemsCount: " << toAdd.size()
                                             << ", limit: " << m_itemsLimit);

    if (toAdd.isEmpty()) {
        LOG4CPLUS_ERROR(logger, "Error adding playlist items: database reached limit!");
        rollbackTransaction();
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
            commitTransaction();
            return first;
        }
    }

    LOG4CPLUS_ERROR(logger, "Error adding items to list");
    rollbackTransaction();
    return -1;
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
        m_insertItemStmt->step();
        if (!m_insertItemStmt->reset()) {
            LOG4CPLUS_ERROR(logger, "Error inserting item into DB");
            return false;
        }
        const int uid = int(sqlite3_last_insert_rowid(m_db));
        LOG4CPLUS_TRACE(logger, "Inserted item into DB with uid " << uid);

        m_insertPlayListItemStmt->bindInt(1, record.uid);
        m_insertPlayListItemStmt->bindInt(2, uid);
        m_insertPlayListItemStmt->bindInt(3, first + k);
        m_insertPlayListItemStmt->step();
        if (!m_insertPlayListItemStmt->reset()) {
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
    m_moveItem1Stmt->step();
    return m_moveItem1Stmt->reset();
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
    PLAYLISTS_LOG_ENTER(logger, "pl=" << record.uid << " from=" << from << " to=" << to);
    beginTransaction();
    const bool moved = moveItemTransaction(record, from, to);
    if (moved) {
        commitTransaction();
    } else {
        LOG4CPLUS_ERROR(logger, "Error moving PlayListItem");
        rollbackTransaction();
    }
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
    m_deletePlayListItemStmt->step();
    if (!m_deletePlayListItemStmt->reset()) {
        LOG4CPLUS_ERROR(logger, "Error removing partial items from list");
        return -1;
    }
    return sqlite3_changes(m_db);
}

int Database::removeItems(const PlayListRecord& record, const QList<int>& indices)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    PLAYLISTS_LOG_ENTER(logger, "pl=" << record.uid << " indices=" << indices);
    beginImmediateTransaction();

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

    if (ok) {
        m_cleanUnusedItemsStmt->step();
        if (!m_cleanUnusedItemsStmt->reset()) {
            LOG4CPLUS_ERROR(logger, "Unable to clean up unused items");
            ok = false;
        }
    }

    if (ok && !closeGapsTransaction(record, indices)) {
        LOG4CPLUS_ERROR(logger, "Unable to restore sequence numbers");
        ok = false;
    }

    if (!ok) {
        LOG4CPLUS_ERROR(logger, "Error removing items from list");
        rollbackTransaction();
        return -1;
    }

    commitTransaction();
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

bool Database::clearItems(const PlayListRecord& record)
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    PLAYLISTS_LOG_ENTER(logger, "pl=" << record.uid);
    if (removeItemsHelper(record, 0, kLastSequenceNumber) < 0) {
        LOG4CPLUS_ERROR(logger, "Unable to clear playList " << record.uid);
        return false;
    }
    // Unused rows left by a failed clean-up go with the next one.
    m_cleanUnusedItemsStmt->step();
    if (!m_cleanUnusedItemsStmt->reset())
        LOG4CPLUS_ERROR(logger, "Unable to clean up unused items");
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
