#include "Database.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QFileInfo>
#include <QSignalSpy>

using log4cplus::DEBUG_LOG_LEVEL;
using log4cplus::ERROR_LOG_LEVEL;
using log4cplus::INFO_LOG_LEVEL;
using log4cplus::WARN_LOG_LEVEL;

TEST(DatabaseTest, freshStartCreatesSchemaAndPlayQueueAndRestartKeepsRows)
{
    WorkDir dir;
    LogCapture log;
    {
        Database db(0, false);
        EXPECT_TRUE(QFileInfo(QString("data-rw/playlists/playlists.sqlite")).isFile());
        StoreReader store;
        EXPECT_EQ(store.rows("SELECT name FROM sqlite_master WHERE name NOT LIKE 'sqlite_%' ORDER BY name"),
                  QStringList({"collections", "collections_playlists", "itemUrlIndex", "items", "playlists",
                               "playlists_items"}));
        EXPECT_EQ(store.rows("SELECT uid, name, shuffle, repeatAll, lastPlayedIndex FROM playlists"),
                  QStringList({"0|PlayQueue|0|0|-1"}));
        const PlayListRecord queue = db.getPlayQueue();
        EXPECT_EQ(queue.uid, 0);
        EXPECT_EQ(queue.name, QString("PlayQueue"));
        EXPECT_EQ(queue.size, 0);
        EXPECT_EQ(db.countPlaylists(), 0);
        ASSERT_GT(db.createPlayList(QString("kept")).uid, 0);
        store.exec("UPDATE playlists SET lastPlayedIndex = 4 WHERE uid = 0");
    }
    EXPECT_TRUE(log.messages(log4cplus::FATAL_LOG_LEVEL).isEmpty());

    Database again(0, false);
    StoreReader store;
    EXPECT_EQ(store.rows("SELECT uid, name, lastPlayedIndex FROM playlists ORDER BY uid"),
              QStringList({"0|PlayQueue|4", "1|kept|-1"}));

    again.clearDatabase();
    EXPECT_EQ(store.rows("SELECT uid, name, lastPlayedIndex FROM playlists"), QStringList({"0|PlayQueue|-1"}));
}

TEST(DatabaseTest, vacuumSignalsOnlyChangesOfTheFlag)
{
    WorkDir dir;
    LogCapture log;
    {
        // Vacuumed during construction, so a later vacuum() has nothing to do.
        Database flagged(0, true);
        EXPECT_EQ(log.startingWith("sqlite vacuum duration: ").size(), 1);
        QSignalSpy spy(&flagged, &Database::vacuumNeeded);
        flagged.vacuum();
        EXPECT_EQ(spy.count(), 0);
    }
    log.clear();
    Database db(0, false);
    QSignalSpy spy(&db, &Database::vacuumNeeded);
    db.vacuum();
    EXPECT_EQ(spy.count(), 0);
    EXPECT_TRUE(log.startingWith("sqlite vacuum duration: ").isEmpty());

    db.setVacuumNeeded();
    db.setVacuumNeeded();
    db.vacuum();
    db.vacuum();
    ASSERT_EQ(spy.count(), 2);
    EXPECT_TRUE(spy.at(0).at(0).toBool());
    EXPECT_FALSE(spy.at(1).at(0).toBool());
    const QStringList durations = log.startingWith("sqlite vacuum duration: ");
    ASSERT_EQ(durations.size(), 1);
    EXPECT_TRUE(durations.first().endsWith(" ms"));
    EXPECT_TRUE(log.contains(INFO_LOG_LEVEL, durations.first()));
}

TEST(DatabaseTest, playlistsAreCreatedListedByNameUpdatedAndSized)
{
    WorkDir dir;
    LogCapture log;
    Database db(0, false);
    const PlayListRecord b = db.createPlayList("b");
    const PlayListRecord a = db.createPlayList("a");
    EXPECT_NE(db.createPlayList("a").uid, a.uid); // names need not be unique
    EXPECT_EQ(a.lastPlayedIndex, -1);
    EXPECT_TRUE(log.contains(DEBUG_LOG_LEVEL, QString("Created playlist uid=%1 name=b").arg(b.uid)));
    EXPECT_EQ(db.countPlaylists(), 3);

    int added = 0;
    db.addItems(b, VexaPlayListAddPosition::Append, TestItems::make(5, "t"), &added);
    PlayListRecord changed = b;
    changed.name = "c";
    changed.shuffle = changed.repeatAll = true;
    changed.lastPlayedIndex = 3;
    EXPECT_TRUE(db.updatePlayList(changed));
    const QList<PlayListRecord> lists = db.getPlayLists();
    ASSERT_EQ(lists.size(), 3);
    EXPECT_EQ(lists.at(0).name, "a");
    EXPECT_EQ(lists.at(0).size, 0);
    const PlayListRecord& read = lists.at(2);
    EXPECT_TRUE(read.uid == b.uid && read.name == "c" && read.shuffle && read.repeatAll && read.lastPlayedIndex == 3 && read.size == 5);

    // Only the stored value 1 reads as true.
    StoreReader().exec("UPDATE playlists SET shuffle = 2, repeatAll = -1 WHERE uid = ?1", {b.uid});
    EXPECT_FALSE(db.getPlayLists().at(2).shuffle || db.getPlayLists().at(2).repeatAll);
}

TEST(DatabaseTest, deletingPlaylistsKeepsQueueAndSharedItems)
{
    WorkDir dir;
    LogCapture log;
    Database db(0, false);
    QSignalSpy vacuum(&db, &Database::vacuumNeeded);

    EXPECT_FALSE(db.deletePlayList(db.getPlayQueue()));
    EXPECT_TRUE(log.contains(ERROR_LOG_LEVEL, "Error deleting PlayList: no such list in DB"));
    EXPECT_TRUE(log.contains(ERROR_LOG_LEVEL, "Error deleting PlayList"));
    EXPECT_EQ(db.getPlayQueue().name, QString("PlayQueue"));

    const PlayListRecord first = db.createPlayList(QString("first"));
    const PlayListRecord second = db.createPlayList(QString("second"));
    int added = 0;
    db.addItems(first, VexaPlayListAddPosition::Append, TestItems::make(3, "f"), &added);
    db.addItems(second, VexaPlayListAddPosition::Append, TestItems::make(2, "s"), &added);
    ASSERT_TRUE(db.addToCollection(db.createCollection(QString("c")), first.uid));
    // The second playlist also refers to the first one's item "f1".
    StoreReader store;
    ASSERT_TRUE(store.exec("INSERT INTO playlists_items(playlist, item, sequenceNumber)"
                           " SELECT ?1, uid, 2 FROM items WHERE title = 'f1'",
                           {second.uid}));

    EXPECT_TRUE(db.deletePlayList(first));
    EXPECT_EQ(store.rows("SELECT title FROM items ORDER BY title"), QStringList({"f1", "s0", "s1"}));
    EXPECT_EQ(store.scalar("SELECT COUNT(*) FROM collections_playlists"), 0);
    EXPECT_FALSE(db.deletePlayList(first));
    EXPECT_TRUE(db.deletePlayList(second));
    ASSERT_EQ(vacuum.count(), 1);
    EXPECT_TRUE(vacuum.at(0).at(0).toBool());
    EXPECT_EQ(db.countPlaylistsItems(), 0);
}

TEST(DatabaseTest, collectionsHoldMembershipsAndRefuseRepeats)
{
    WorkDir dir;
    LogCapture log;
    Database db(0, false);
    const PlayListRecord p1 = db.createPlayList(QString("p1"));
    const PlayListRecord p2 = db.createPlayList(QString("p2"));
    const CollectionRecord zed = db.createCollection(QString("zed"));
    const CollectionRecord empty = db.createCollection(QString("empty"));
    EXPECT_TRUE(log.contains(DEBUG_LOG_LEVEL, QString("Inserted collection uid=%1 name=zed").arg(zed.uid)));

    EXPECT_TRUE(db.addToCollection(zed, p2.uid));
    EXPECT_TRUE(db.addToCollection(zed, p1.uid));
    EXPECT_FALSE(db.addToCollection(zed, p1.uid));
    EXPECT_TRUE(log.contains(ERROR_LOG_LEVEL, QString("Unable to add pl=%1 to collection=%2").arg(p1.uid).arg(zed.uid)));
    EXPECT_FALSE(db.addToCollection(zed, 777)); // refused by the foreign key

    const QList<CollectionRecord> collections = db.getCollections();
    ASSERT_EQ(collections.size(), 2);
    EXPECT_EQ(collections.at(0).name, QString("empty"));
    EXPECT_TRUE(collections.at(0).playlists.isEmpty());
    QList<int> members = collections.at(1).playlists;
    std::sort(members.begin(), members.end());
    EXPECT_EQ(members, QList<int>({p1.uid, p2.uid}));

    EXPECT_FALSE(db.removeFromCollection(empty, p1.uid));
    EXPECT_TRUE(log.contains(WARN_LOG_LEVEL, QString("Unable to remove pl=%1 From collection=%2 in database: no such playlist in collection in DB")
                                                 .arg(p1.uid).arg(empty.uid)));
    EXPECT_TRUE(db.removeFromCollection(zed, p1.uid));
    EXPECT_EQ(db.getCollections().at(1).playlists, QList<int>({p2.uid}));

    EXPECT_TRUE(db.deleteCollection(zed));
    EXPECT_FALSE(db.deleteCollection(zed));
    EXPECT_TRUE(log.contains(WARN_LOG_LEVEL, QString("Unable to delete collection uid=%1 in database: no such collection in DB").arg(zed.uid)));
    EXPECT_EQ(StoreReader().scalar("SELECT COUNT(*) FROM collections_playlists"), 0);
    EXPECT_EQ(db.countPlaylists(), 2);
    EXPECT_EQ(db.countCollections(), 1);
}
