#include "Database.h"

#include "PlayListsLog.h"
#include "Sqlite3Statement.h"
#include "StoreCheckpointer.h"

#include <sqlite3.h>

#include <QDir>
#include <QElapsedTimer>

namespace {

const char* const kDatabaseDirectory = "data-rw/playlists/";
const char* const kDatabaseFile = "data-rw/playlists/playlists.sqlite";

// How long a write waits for another connection's lock before it fails.
const int kBusyTimeoutMs = 5000;

// What stays of the page cache after a large command (SQLite's default
// size): the rest goes back once the command is done.
const int kKeptCacheBytes = 2 * 1024 * 1024;

} // namespace

// Receives SQLite's own error log, where the library still accepts the
// setting when the store registers it.
static void sqliteErrorLogCallback(void*, int code, const char* message)
{
    LOG4CPLUS_ERROR(PlayListsLog::logger(), "SQLite error " << code << ": " << message);
}

Database::Database(int itemsLimit, bool vacuumNeeded)
    : QObject(nullptr), m_itemsLimit(itemsLimit), m_vacuumFlag(vacuumNeeded)
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

    // A writer outside the module waits its turn instead of failing one.
    sqlite3_busy_timeout(m_db, kBusyTimeoutMs);
    for (const char* pragma : ConnectionPragmas)
        execute(pragma);

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
    m_checkpointer = std::make_unique<StoreCheckpointer>(m_db, kDatabaseFile);
}

Database::~Database()
{
    m_checkpointer.reset();
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
    // The other connections (the checkpointer, an outside reader) never keep
    // the write lock, so a busy or locked commit clears as soon as SQLite has
    // finished with it.
    int rc = execute("COMMIT;");
    while (rc > SQLITE_ERROR)
        rc = execute("COMMIT;");
    if (rc == SQLITE_ERROR)
        LOG4CPLUS_ERROR(PlayListsLog::logger(), "Commit transaction failed");
    releaseLargeCache();
}

int Database::rollbackTransaction()
{
    const int rc = execute("ROLLBACK;");
    releaseLargeCache();
    return rc;
}

void Database::releaseLargeCache()
{
    int used = 0;
    int highest = 0;
    if (sqlite3_db_status(m_db, SQLITE_DBSTATUS_CACHE_USED, &used, &highest, 0) == SQLITE_OK && used > kKeptCacheBytes)
        sqlite3_db_release_memory(m_db);
}

void Database::ensureTablesExist()
{
    const log4cplus::Logger& logger = PlayListsLog::logger();
    VEXA_LOG_ENTER(TRACE, logger, "");
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
    VEXA_LOG_ENTER(TRACE, logger, "");
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
    m_moveEntriesStmt = Sqlite3Statement::create(m_db, QStringLiteral("UPDATE playlists_items SET playlist = ?1, sequenceNumber = sequenceNumber + ?2 WHERE playlist = ?3 AND sequenceNumber < ?4"),
                                                 QStringLiteral("moveEntries"));
    m_lastItemUidStmt = Sqlite3Statement::create(m_db, QStringLiteral("SELECT COALESCE(MAX(uid), 0) FROM items"),
                                                 QStringLiteral("lastItemUid"));
    m_copyItemsStmt = Sqlite3Statement::create(m_db, QStringLiteral("INSERT INTO items(title, artist, album, artworkUrl, genre, durationSeconds, url, serviceId, vexaRoles) SELECT i.title, i.artist, i.album, i.artworkUrl, i.genre, i.durationSeconds, i.url, i.serviceId, i.vexaRoles FROM playlists_items pi JOIN items i ON i.uid = pi.item WHERE pi.playlist = ?1 AND pi.sequenceNumber < ?2 ORDER BY pi.sequenceNumber"),
                                               QStringLiteral("copyItems"));
    m_linkCopiedItemsStmt = Sqlite3Statement::create(m_db, QStringLiteral("INSERT INTO playlists_items(playlist, item, sequenceNumber) SELECT ?1, uid, ?2 + ROW_NUMBER() OVER (ORDER BY uid) - 1 FROM items WHERE uid > ?3"),
                                                     QStringLiteral("linkCopiedItems"));
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
