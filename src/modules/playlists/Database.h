#pragma once

#include "CollectionRecord.h"
#include "PlayListRecord.h"
#include "VexaPlayListAddPosition.h"
#include "VexaPlayListItem.h"

#include <QList>
#include <QObject>
#include <QString>

#include <memory>

struct sqlite3;
class Sqlite3Statement;
class StoreCheckpointer;

// The module's persistent store: one SQLite file with the playlists, the play
// queue, their entries and the collections. Used from the worker's thread only.
//
// Within a playlist the entries' sequence numbers are unique and dense from 0,
// so every block shift parks the block beyond the playlist's end first.
class Database : public QObject
{
    Q_OBJECT

public:
    // Opens or creates "data-rw/playlists/playlists.sqlite" below the working
    // directory, vacuums when asked to, creates the schema and prepares every
    // statement. Does not return when the file can't be opened.
    Database(int itemsLimit, bool vacuumNeeded);
    ~Database() override;

    // The settings the store's connection takes right after it opens:
    // - write-ahead logging: a reader outside the module (a backup, the
    //   sqlite3 shell) never makes one of its writes fail;
    // - commits reach the disk at checkpoints: a power cut may lose the last
    //   commits, never the store's consistency;
    // - room for the pages one large add or removal touches, so that they are
    //   not written to the log and read back while the command still runs.
    static constexpr const char* ConnectionPragmas[] = {"PRAGMA journal_mode=WAL;", "PRAGMA synchronous=NORMAL;",
                                                        "PRAGMA cache_size=-16384;"};

    int beginTransaction();
    int beginImmediateTransaction();
    void commitTransaction();
    int rollbackTransaction();

    void ensureTablesExist();
    void createTableHelper(const char* sql, const char* label);
    void prepareStatements();
    void clearDatabase();

    void setVacuumNeeded();
    void vacuum();

    // Playlists, collections and counts.
    PlayListRecord getPlayQueue();
    QList<PlayListRecord> getPlayLists();
    PlayListRecord createPlayList(const QString& name);
    bool deletePlayList(const PlayListRecord& record);
    bool deletePlayListTransaction(const PlayListRecord& record);
    bool updatePlayList(const PlayListRecord& record);
    QList<CollectionRecord> getCollections();
    CollectionRecord createCollection(const QString& name);
    bool deleteCollection(const CollectionRecord& record);
    bool addToCollection(const CollectionRecord& record, const int& playlistUid);
    bool removeFromCollection(const CollectionRecord& record, const int& playlistUid);
    int countPlaylists();
    int countPlaylistsItems();
    int countCollections();

    // Entries of one playlist. The record's size is trusted, not re-read.
    QList<VexaPlayListItem> getItems(const PlayListRecord& record, int from, int to);
    VexaPlayListItem getItemByUid(int uid);
    int getNextSequenceNumber(const PlayListRecord& record);
    int addItemsNextSequenceNumber(const PlayListRecord& record, const VexaPlayListAddPosition::Enum& position);
    int addItems(const PlayListRecord& record, VexaPlayListAddPosition::Enum position,
                 const QList<VexaPlayListItem>& items, int* added);
    bool addItemsFromSequenceNumber(const PlayListRecord& record, const int& first,
                                    const QList<VexaPlayListItem>& items);
    // How many of count new entries the item limit lets in.
    int itemsWithinLimit(int count);
    // Adds the entries of source to record at position, as addItems would add
    // their items, within the item limit, in a few statements whatever their
    // number. With move the entries leave source and keep their items;
    // otherwise each gets a copy of its item. Results as addItems.
    int addItemsOf(const PlayListRecord& record, const PlayListRecord& source, VexaPlayListAddPosition::Enum position,
                   bool move, int* added);
    // Adds delta to the sequence numbers from..to of a playlist, in one statement.
    bool shiftSequenceNumbers(const PlayListRecord& record, int from, int to, int delta);
    bool offsetItemsFromTransaction(const PlayListRecord& record, int from, int offset);
    bool moveItem(const PlayListRecord& record, int from, int to);
    bool moveItemTransaction(const PlayListRecord& record, int from, int to);
    int removeItems(const PlayListRecord& record, const QList<int>& indices);
    int removeItemsHelper(const PlayListRecord& record, int from, int to);
    // Numbers the entries left after removing indices afresh from the first of them.
    bool closeGapsTransaction(const PlayListRecord& record, const QList<int>& removed);
    bool clearItems(const PlayListRecord& record);
    // Deletes the items no entry refers to any more; false (logged) when it failed.
    bool cleanUnusedItems();
    void printItems(const PlayListRecord& record);

signals:
    void vacuumNeeded(bool need);

private:
    int execute(const char* sql);
    // Gives back what a large command cached beyond the cache's usual size.
    void releaseLargeCache();
    void readItem(Sqlite3Statement* statement, VexaPlayListItem& item);
    void readPlayList(Sqlite3Statement* statement, PlayListRecord& record);

    sqlite3* m_db = nullptr;
    std::unique_ptr<StoreCheckpointer> m_checkpointer;
    int m_itemsLimit = 0;
    bool m_vacuumFlag = false;

    Sqlite3Statement* m_getPlayQueueStmt = nullptr;
    Sqlite3Statement* m_getPlayListsStmt = nullptr;
    Sqlite3Statement* m_createPlayListStmt = nullptr;
    Sqlite3Statement* m_deletePlayListStmt = nullptr;
    Sqlite3Statement* m_updatePlayListStmt = nullptr;
    Sqlite3Statement* m_getItemsStmt = nullptr;
    Sqlite3Statement* m_moveItem1Stmt = nullptr;
    Sqlite3Statement* m_getNextSequenceNumberStmt = nullptr;
    Sqlite3Statement* m_insertItemStmt = nullptr;
    Sqlite3Statement* m_insertPlayListItemStmt = nullptr;
    Sqlite3Statement* m_deletePlayListItemStmt = nullptr;
    Sqlite3Statement* m_cleanUnusedItemsStmt = nullptr;
    Sqlite3Statement* m_getItemByUidStmt = nullptr;
    Sqlite3Statement* m_getCollectionsStmt = nullptr;
    Sqlite3Statement* m_createCollectionStmt = nullptr;
    Sqlite3Statement* m_addToCollectionStmt = nullptr;
    Sqlite3Statement* m_removeFromCollectionStmt = nullptr;
    Sqlite3Statement* m_deleteCollectionStmt = nullptr;
    Sqlite3Statement* m_countPlaylistsStmt = nullptr;
    Sqlite3Statement* m_countPlaylistItemsStmt = nullptr;
    Sqlite3Statement* m_countCollectionsStmt = nullptr;
    Sqlite3Statement* m_moveEntriesStmt = nullptr;
    Sqlite3Statement* m_lastItemUidStmt = nullptr;
    Sqlite3Statement* m_copyItemsStmt = nullptr;
    Sqlite3Statement* m_linkCopiedItemsStmt = nullptr;
};
