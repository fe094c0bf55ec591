#include "Database.h"
#include "PlayListManager.h"
#include "Sqlite3Statement.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>

#include <random>
#include <sqlite3.h>

using log4cplus::DEBUG_LOG_LEVEL;
using log4cplus::ERROR_LOG_LEVEL;
using log4cplus::FATAL_LOG_LEVEL;
using log4cplus::INFO_LOG_LEVEL;
using log4cplus::TRACE_LOG_LEVEL;
using log4cplus::WARN_LOG_LEVEL;

namespace {

// "seq|title" rows as StoreReader::entries gives them.
QStringList expectedEntries(const QStringList& titles)
{
    QStringList rows;
    for (int i = 0; i < titles.size(); ++i)
        rows.append(QString::number(i) + QLatin1Char('|') + titles.at(i));
    return rows;
}

class DatabaseItemsTest : public ::testing::Test
{
protected:
    // A playlist holding t0..t<count-1>, with the record as a caller would keep it.
    PlayListRecord filled(const QString& name, int count, Database& db)
    {
        PlayListRecord record = db.createPlayList(name);
        int added = 0;
        if (count > 0)
            db.addItems(record, VexaPlayListAddPosition::Append, TestItems::make(count, "t"), &added);
        record.size = count;
        return record;
    }

    WorkDir m_dir;
    LogCapture m_log;
};

using DatabaseTest = DatabaseItemsTest;

} // namespace

TEST_F(DatabaseTest, freshStartCreatesSchemaAndPlayQueueAndRestartKeepsRows)
{
    {
        Database db(0, false);
        EXPECT_TRUE(QFileInfo(QString("data-rw/playlists/playlists.sqlite")).isFile());
        StoreReader store;
        EXPECT_EQ(store.rows("SELECT name FROM sqlite_master WHERE name NOT LIKE 'sqlite_%' ORDER BY name"),
                  QStringList({"collections", "collections_playlists", "itemUrlIndex", "items", "playlists", "playlistsItemsItemIndex", "playlists_items"}));
        EXPECT_EQ(store.rows("SELECT uid, name, shuffle, repeatAll, lastPlayedIndex FROM playlists"), QStringList({"0|PlayQueue|0|0|-1"}));
        const PlayListRecord queue = db.getPlayQueue();
        EXPECT_EQ(queue.uid, 0);
        EXPECT_EQ(queue.name, QString("PlayQueue"));
        EXPECT_EQ(queue.size, 0);
        EXPECT_EQ(db.countPlaylists(), 0);
        ASSERT_GT(db.createPlayList(QString("kept")).uid, 0);
        store.exec("UPDATE playlists SET lastPlayedIndex = 4 WHERE uid = 0");
    }
    EXPECT_TRUE(m_log.messages(log4cplus::FATAL_LOG_LEVEL).isEmpty());

    Database again(0, false);
    StoreReader store;
    EXPECT_EQ(store.rows("SELECT uid, name, lastPlayedIndex FROM playlists ORDER BY uid"), QStringList({"0|PlayQueue|4", "1|kept|-1"}));

    again.clearDatabase();
    EXPECT_EQ(store.rows("SELECT uid, name, lastPlayedIndex FROM playlists"), QStringList({"0|PlayQueue|-1"}));
}

// Vacuuming as a store opens, and a vacuum with nothing asked for, are
// checked against the running host.
TEST_F(DatabaseTest, vacuumSignalsOnlyChangesOfTheFlag)
{
    Database db(0, false);
    QSignalSpy spy(&db, &Database::vacuumNeeded);
    db.setVacuumNeeded();
    db.setVacuumNeeded();
    db.vacuum();
    db.vacuum();
    ASSERT_EQ(spy.count(), 2);
    EXPECT_TRUE(spy.at(0).at(0).toBool());
    EXPECT_FALSE(spy.at(1).at(0).toBool());
    const QStringList durations = m_log.startingWith("sqlite vacuum duration: ");
    ASSERT_EQ(durations.size(), 1);
    EXPECT_TRUE(durations.first().endsWith(" ms"));
    EXPECT_TRUE(m_log.contains(INFO_LOG_LEVEL, durations.first()));
}

TEST_F(DatabaseTest, playlistsAreCreatedListedByNameUpdatedAndSized)
{
    Database db(0, false);
    const PlayListRecord b = db.createPlayList("b");
    const PlayListRecord a = db.createPlayList("a");
    EXPECT_NE(db.createPlayList("a").uid, a.uid); // names need not be unique
    EXPECT_EQ(a.lastPlayedIndex, -1);
    EXPECT_TRUE(m_log.contains(DEBUG_LOG_LEVEL, QString("Created playlist uid=%1 name=b").arg(b.uid)));
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

TEST_F(DatabaseTest, deletingPlaylistsKeepsQueueAndSharedItems)
{
    Database db(0, false);
    QSignalSpy vacuum(&db, &Database::vacuumNeeded);

    EXPECT_FALSE(db.deletePlayList(db.getPlayQueue()));
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, "Error deleting PlayList: no such list in DB"));
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, "Error deleting PlayList"));
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

TEST_F(DatabaseTest, collectionsHoldMembershipsAndRefuseRepeats)
{
    Database db(0, false);
    const PlayListRecord p1 = db.createPlayList(QString("p1"));
    const PlayListRecord p2 = db.createPlayList(QString("p2"));
    const CollectionRecord zed = db.createCollection(QString("zed"));
    const CollectionRecord empty = db.createCollection(QString("empty"));
    EXPECT_TRUE(m_log.contains(DEBUG_LOG_LEVEL, QString("Inserted collection uid=%1 name=zed").arg(zed.uid)));

    EXPECT_TRUE(db.addToCollection(zed, p2.uid));
    EXPECT_TRUE(db.addToCollection(zed, p1.uid));
    EXPECT_FALSE(db.addToCollection(zed, p1.uid));
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, QString("Unable to add pl=%1 to collection=%2").arg(p1.uid).arg(zed.uid)));
    EXPECT_FALSE(db.addToCollection(zed, 777)); // refused by the foreign key

    const QList<CollectionRecord> collections = db.getCollections();
    ASSERT_EQ(collections.size(), 2);
    EXPECT_EQ(collections.at(0).name, QString("empty"));
    EXPECT_TRUE(collections.at(0).playlists.isEmpty());
    QList<int> members = collections.at(1).playlists;
    std::sort(members.begin(), members.end());
    EXPECT_EQ(members, QList<int>({p1.uid, p2.uid}));

    EXPECT_FALSE(db.removeFromCollection(empty, p1.uid));
    EXPECT_TRUE(m_log.contains(WARN_LOG_LEVEL, QString("Unable to remove pl=%1 From collection=%2 in database: no such playlist in collection in DB")
                                                 .arg(p1.uid).arg(empty.uid)));
    EXPECT_TRUE(db.removeFromCollection(zed, p1.uid));
    EXPECT_EQ(db.getCollections().at(1).playlists, QList<int>({p2.uid}));

    EXPECT_TRUE(db.deleteCollection(zed));
    EXPECT_FALSE(db.deleteCollection(zed));
    EXPECT_TRUE(m_log.contains(WARN_LOG_LEVEL, QString("Unable to delete collection uid=%1 in database: no such collection in DB").arg(zed.uid)));
    EXPECT_EQ(StoreReader().scalar("SELECT COUNT(*) FROM collections_playlists"), 0);
    EXPECT_EQ(db.countPlaylists(), 2);
    EXPECT_EQ(db.countCollections(), 1);
}


// The ordinary placements are covered by the random edits below; these are the edges.
TEST_F(DatabaseItemsTest, addingAtTheEdgesAppendsOrRefuses)
{
    Database db(0, false);
    StoreReader store;
    PlayListRecord pl = filled("p", 5, db);
    EXPECT_EQ(db.getNextSequenceNumber(pl), 5);
    // A play position past the end (its entry, the last one, was removed)
    // sends new entries to the end, never beyond it.
    pl.lastPlayedIndex = 5;
    int added = 0;
    EXPECT_EQ(db.addItems(pl, VexaPlayListAddPosition::Now, TestItems::make(1, "p"), &added), 5);
    pl.size = 6;
    EXPECT_EQ(db.getNextSequenceNumber(pl), 6);

    // An unknown position adds nothing.
    const QStringList before = store.snapshot();
    m_log.clear();
    EXPECT_EQ(db.addItems(pl, VexaPlayListAddPosition::Enum(7), TestItems::make(2, "u"), &added), -1);
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, "Error adding items to list"));
    EXPECT_EQ(store.snapshot(), before);

    // Every position appends to an empty playlist, whatever it last played.
    PlayListRecord empty = db.createPlayList("e");
    empty.lastPlayedIndex = 3;
    EXPECT_EQ(db.addItems(empty, VexaPlayListAddPosition::Now, TestItems::make(2, "e"), &added), 0);
    EXPECT_EQ(store.entries(empty.uid), expectedEntries({"e0", "e1"}));
    EXPECT_EQ(db.addItems(empty, VexaPlayListAddPosition::Append, QList<VexaPlayListItem>(), &added), -2);
    EXPECT_EQ(added, 0);

    m_log.clear();
    db.addItems(empty, VexaPlayListAddPosition::Append, TestItems::make(1, "z"), nullptr);
    EXPECT_TRUE(m_log.contains(TRACE_LOG_LEVEL,
                               QString("Enter Database::addItems: pl: %1 pl.size(): 0 position: append items.size(): 1").arg(empty.uid)));
}

TEST_F(DatabaseItemsTest, itemsReadBackWithEveryField)
{
    Database db(0, false);
    StoreReader store;
    PlayListRecord pl = db.createPlayList(QStringLiteral("p"));
    VexaPlayListItem item = TestItems::item(QStringLiteral("Ünïcødé ♪ title"));
    item.setUid(999); // ignored: the store gives the uid
    int added = 0;
    ASSERT_EQ(db.addItems(pl, VexaPlayListAddPosition::Append, {item}, &added), 0);

    const QList<VexaPlayListItem> items = db.getItems(pl, 0, 10);
    ASSERT_EQ(items.size(), 1);
    EXPECT_NE(items.first().uid(), 999);
    VexaPlayListItem expected = item;
    expected.setUid(items.first().uid());
    expected.setSequenceNumber(0);
    EXPECT_EQ(items.first(), expected);
    EXPECT_EQ(db.getItemByUid(expected.uid()), expected);
    EXPECT_EQ(db.getItemByUid(12345).uid(), VexaPlayListItem().uid());

    // NULL text columns come back as null strings.
    ASSERT_TRUE(store.exec("INSERT INTO items(uid, title, url, serviceId) VALUES(500, 'bare', 'u', 's')"));
    ASSERT_TRUE(store.exec("INSERT INTO playlists_items(playlist, item, sequenceNumber) VALUES(?1, 500, 1)",
                           {pl.uid}));
    const VexaPlayListItem bare = db.getItemByUid(500);
    EXPECT_EQ(bare.sequenceNumber(), 1);
    EXPECT_TRUE(bare.artist().isNull());
    EXPECT_FALSE(bare.title().isNull());
    EXPECT_TRUE(db.getItems(pl, 2, 5).isEmpty());
}

TEST_F(DatabaseItemsTest, itemLimitTruncatesAndStopsAdding)
{
    {
        Database db(10, false);
        PlayListRecord pl = filled("p", 8, db);
        StoreReader store;
        int added = -1;
        EXPECT_EQ(db.addItems(pl, VexaPlayListAddPosition::Append, TestItems::make(5, "l"), &added), 8);
        EXPECT_EQ(added, 2);
        EXPECT_EQ(store.entries(pl.uid), expectedEntries({"t0", "t1", "t2", "t3", "t4", "t5", "t6", "t7", "l0", "l1"}));
        pl.size = 10;

        m_log.clear();
        EXPECT_EQ(db.addItems(pl, VexaPlayListAddPosition::Append, TestItems::make(1, "m"), &added), -2);
        EXPECT_EQ(added, 0);
        EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, "Error adding playlist items: database reached limit!"));
        EXPECT_EQ(db.countPlaylistsItems(), 10);
    }
    {
        Database unlimited(0, false);
        PlayListRecord more = filled("q", 2, unlimited);
        EXPECT_EQ(unlimited.countPlaylistsItems(), 12);
    }
    // The limit was lowered below what is stored: the request is not cut.
    Database db(10, false);
    PlayListRecord pl = db.createPlayList(QStringLiteral("r"));
    int added = 0;
    EXPECT_EQ(db.addItems(pl, VexaPlayListAddPosition::Append, TestItems::make(3, "r"), &added), 0);
    EXPECT_EQ(added, 3);
    EXPECT_EQ(db.countPlaylistsItems(), 15);
}

TEST_F(DatabaseItemsTest, removingRenumbersAndCleansUp)
{
    Database db(0, false);
    StoreReader store;
    QSignalSpy vacuum(&db, &Database::vacuumNeeded);
    const PlayListRecord pl = filled("p", 6, db);
    // Descending indices renumber from the first one given; the gap below stays.
    EXPECT_EQ(db.removeItems(pl, {4, 2}), 2);
    EXPECT_EQ(store.entries(pl.uid), QStringList({"0|t0", "1|t1", "3|t3", "4|t5"}));
    EXPECT_EQ(store.rows("SELECT title FROM items ORDER BY title"), QStringList({"t0", "t1", "t3", "t5"}));
    EXPECT_EQ(vacuum.count(), 1);
    EXPECT_TRUE(m_log.contains(TRACE_LOG_LEVEL, QString("Enter Database::removeItems: pl=%1 indices=(4, 2)").arg(pl.uid)));

    // An index that is not there: nothing is removed at all.
    PlayListRecord three = pl;
    three.size = 3;
    const QStringList before = store.snapshot();
    m_log.clear();
    EXPECT_EQ(db.removeItems(three, {0, 7}), -1);
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, "Unable to remove all item indices"));
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, "Error removing items from list"));
    EXPECT_EQ(store.snapshot(), before);
}

TEST_F(DatabaseItemsTest, clearingRemovesEntriesAndUnsharedItems)
{
    Database db(0, false);
    StoreReader store;
    QSignalSpy vacuum(&db, &Database::vacuumNeeded);
    PlayListRecord pl = filled("p", 4, db);
    pl.lastPlayedIndex = 2;
    db.updatePlayList(pl);
    const PlayListRecord other = filled("q", 1, db);
    ASSERT_TRUE(store.exec("INSERT INTO playlists_items(playlist, item, sequenceNumber)"
                           " SELECT ?1, item, 1 FROM playlists_items WHERE playlist = ?2 AND sequenceNumber = 3",
                           {other.uid, pl.uid}));

    EXPECT_TRUE(db.clearItems(pl));
    EXPECT_TRUE(store.entries(pl.uid).isEmpty());
    EXPECT_EQ(store.entries(other.uid), expectedEntries({"t0", "t3"}));
    EXPECT_EQ(db.countPlaylistsItems(), 2);
    EXPECT_EQ(vacuum.count(), 1);
    EXPECT_EQ(store.scalar("SELECT lastPlayedIndex FROM playlists WHERE uid = ?1", {pl.uid}), 2);
}

TEST_F(DatabaseItemsTest, printItemsDumpsThePlaylistWhenTracing)
{
    Database db(0, false);
    PlayListRecord pl = filled("p", 2, db);
    const QList<VexaPlayListItem> items = db.getItems(pl, 0, 1);
    m_log.clear();
    db.printItems(pl);
    EXPECT_EQ(m_log.startingWith("uid: "), QStringList({QStringLiteral("uid: %1 seqNum: 0 name: t0").arg(items.at(0).uid()),
                           QStringLiteral("uid: %1 seqNum: 1 name: t1").arg(items.at(1).uid())}));
}

// Random adds, moves and removals against a list kept by the test: after
// every step the numbers must be dense from 0 and in the model's order, and
// no item row may be left without an entry.
TEST_F(DatabaseItemsTest, randomEditsKeepSequenceNumbersDenseAndOrdered)
{
    LogCapture quiet("PlayLists", log4cplus::INFO_LOG_LEVEL);
    Database db(0, false);
    StoreReader store;
    PlayListRecord pl = db.createPlayList(QStringLiteral("random"));
    QStringList model;
    std::mt19937 random(20240611);
    int nextTitle = 0;

    for (int step = 0; step < 150; ++step) {
        const int size = model.size();
        const int action = size == 0 ? 0 : int(random() % 3);
        pl.size = size;
        if (action == 0) {
            const auto position = VexaPlayListAddPosition::Enum(random() % 3);
            pl.lastPlayedIndex = size == 0 ? -1 : int(random() % (size + 1)) - 1;
            const int count = 1 + int(random() % 4);
            QList<VexaPlayListItem> items;
            QStringList added;
            for (int i = 0; i < count; ++i) {
                added.append(QStringLiteral("i%1").arg(nextTitle++));
                items.append(TestItems::item(added.last()));
            }
            int expectedFirst = size;
            if (size > 0 && position != VexaPlayListAddPosition::Append && pl.lastPlayedIndex >= 0)
                expectedFirst = pl.lastPlayedIndex + 1;
            int addedCount = 0;
            ASSERT_EQ(db.addItems(pl, position, items, &addedCount), expectedFirst) << "step " << step;
            ASSERT_EQ(addedCount, count);
            for (int i = 0; i < count; ++i)
                model.insert(expectedFirst + i, added.at(i));
        } else if (action == 1) {
            const int from = int(random() % size);
            const int to = int(random() % size);
            ASSERT_TRUE(db.moveItem(pl, from, to)) << "step " << step;
            model.move(from, to);
        } else {
            QList<int> indices;
            for (int i = 0; i < size; ++i) {
                if (random() % 4 == 0)
                    indices.append(i);
            }
            if (indices.isEmpty())
                indices.append(int(random() % size));
            ASSERT_EQ(db.removeItems(pl, indices), indices.size()) << "step " << step;
            for (int i = indices.size() - 1; i >= 0; --i)
                model.removeAt(indices.at(i));
        }
        ASSERT_EQ(store.entries(pl.uid), expectedEntries(model)) << "step " << step << " action " << action;
        ASSERT_EQ(db.countPlaylistsItems(), model.size()) << "step " << step;
    }
}

// A step that fails half way through an operation must leave the store as
// it was: a trigger makes one particular row change fail.
TEST_F(DatabaseItemsTest, failureInsideAnOperationRollsEverythingBack)
{
    Database db(0, false);
    StoreReader store;
    PlayListRecord pl = filled("p", 5, db);
    pl.lastPlayedIndex = 1;

    ASSERT_TRUE(store.exec("CREATE TRIGGER failInsert BEFORE INSERT ON playlists_items"
                           " WHEN NEW.sequenceNumber = 3 BEGIN SELECT RAISE(ABORT, 'injected'); END"));
    QStringList before = store.snapshot();
    int added = 0;
    EXPECT_EQ(db.addItems(pl, VexaPlayListAddPosition::Next, TestItems::make(3, "n"), &added), -1);
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, "Unable to reset sql statement: insertPlayListItem msg: constraint failed"));
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, "Error inserting item into playlist DB"));
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, "Error adding items to list"));
    EXPECT_EQ(store.snapshot(), before);
    ASSERT_TRUE(store.exec("DROP TRIGGER failInsert"));

    // The moved entry's landing (parked 1+5 onto 3) fails.
    ASSERT_TRUE(store.exec("CREATE TRIGGER failLanding BEFORE UPDATE ON playlists_items"
                           " WHEN OLD.sequenceNumber = 6 AND NEW.sequenceNumber = 3"
                           " BEGIN SELECT RAISE(ABORT, 'injected'); END"));
    m_log.clear();
    EXPECT_FALSE(db.moveItem(pl, 1, 3));
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, "Error moving PlayListItem"));
    EXPECT_EQ(store.snapshot(), before);
    ASSERT_TRUE(store.exec("DROP TRIGGER failLanding"));

    // Renumbering after the delete fails when the second entry lands.
    ASSERT_TRUE(store.exec("CREATE TRIGGER failRenumber BEFORE UPDATE ON playlists_items"
                           " WHEN NEW.sequenceNumber = 2"
                           " BEGIN SELECT RAISE(ABORT, 'injected'); END"));
    m_log.clear();
    EXPECT_EQ(db.removeItems(pl, {1}), -1);
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, "Unable to restore sequence numbers"));
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, "Error removing items from list"));
    EXPECT_EQ(store.snapshot(), before);
    ASSERT_TRUE(store.exec("DROP TRIGGER failRenumber"));

    // With the faults gone the same operations succeed.
    EXPECT_EQ(db.addItems(pl, VexaPlayListAddPosition::Next, TestItems::make(3, "n"), &added), 2);
    EXPECT_EQ(store.entries(pl.uid), expectedEntries({"t0", "t1", "n0", "n1", "n2", "t2", "t3", "t4"}));
}

TEST(Sqlite3StatementTest, boundTextOutlivesItsSourceUntilReset)
{
    LogCapture log;
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(":memory:", &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db, "CREATE TABLE t (a TEXT, b TEXT, n INTEGER UNIQUE)", nullptr, nullptr, nullptr),
              SQLITE_OK);

    Sqlite3Statement* insert =
        Sqlite3Statement::create(db, QStringLiteral("INSERT INTO t VALUES (?1, ?2, ?3)"), QStringLiteral("insert"));
    ASSERT_NE(insert, nullptr);
    {
        // Temporaries die before the step; the statement must still see them.
        EXPECT_TRUE(insert->bindText(1, QStringLiteral("first ") + QString(QChar(0x266A))));
        EXPECT_TRUE(insert->bindText(2, QString(200, QLatin1Char('b'))));
    }
    EXPECT_TRUE(insert->bindInt(3, 7));
    EXPECT_EQ(insert->step(), SQLITE_DONE);
    EXPECT_TRUE(insert->reset());

    // Same unique number again: the failure surfaces at reset.
    insert->bindText(1, QStringLiteral("x"));
    insert->bindText(2, QStringLiteral("y"));
    insert->bindInt(3, 7);
    EXPECT_NE(insert->step(), SQLITE_DONE);
    EXPECT_FALSE(insert->reset());
    EXPECT_TRUE(log.contains(ERROR_LOG_LEVEL, "Unable to reset sql statement: insert msg: constraint failed"));

    Sqlite3Statement* select = Sqlite3Statement::create(db, QStringLiteral("SELECT a, b, n, NULL FROM t"), QStringLiteral("select"));
    ASSERT_NE(select, nullptr);
    ASSERT_TRUE(select->step_row());
    EXPECT_EQ(select->columnText(0), QStringLiteral("first ") + QString(QChar(0x266A)));
    EXPECT_EQ(select->columnText(1), QString(200, QLatin1Char('b')));
    EXPECT_EQ(select->columnInt(2), 7);
    EXPECT_TRUE(select->columnText(3).isNull());
    EXPECT_FALSE(select->step_row());
    EXPECT_TRUE(select->reset());

    EXPECT_EQ(Sqlite3Statement::create(db, QStringLiteral("SELEC nonsense"), QStringLiteral("broken")), nullptr);
    EXPECT_TRUE(log.contains(FATAL_LOG_LEVEL, "Unable to prepare statement broken: SQL logic error"));
    delete insert;
    delete select;
    sqlite3_close_v2(db);
}

namespace {

// Opens the store (and the manager over it, then runs more) in the child of
// a death test, which writes the module's log to stderr, where EXPECT_DEATH
// looks for the FATAL line.
void openStore(bool withManager = false, void (*more)(Database&, PlayListManager&) = nullptr)
{
    LogCapture log;
    log.echoToStderr();
    Database db(0, false);
    if (withManager) {
        PlayListManager manager(&db);
        if (more)
            more(db, manager);
    }
}

// A file with the given content at the store's place.
void plantStore(const QByteArray& content)
{
    ASSERT_TRUE(QDir().mkpath("data-rw/playlists"));
    QFile file("data-rw/playlists/playlists.sqlite");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

TEST(DatabaseDeathTest, storeThatCannotBeOpenedStopsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    {
        WorkDir dir;
        QFile blocker("data-rw");
        ASSERT_TRUE(blocker.open(QIODevice::WriteOnly)); // a file where the directory should be
        blocker.close();
        EXPECT_DEATH(openStore(), "Unable to create directory for PlayList database file");
    }
    {
        WorkDir dir;
        ASSERT_TRUE(QDir().mkpath("data-rw/playlists"));
        // A link into a directory that does not exist can be neither opened nor created.
        ASSERT_TRUE(QFile::link("missing/dir/store.sqlite", "data-rw/playlists/playlists.sqlite"));
        EXPECT_DEATH(openStore(), "Unable to open PlayList database file: unable to open database file");
    }
    {
        WorkDir dir;
        plantStore(QByteArray(4096, 'x'));
        EXPECT_DEATH(openStore(), "Unable to create table playlists: file is not a database");
    }
}

TEST(DatabaseDeathTest, removingAnEmptyIndexListStopsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    WorkDir dir;
    EXPECT_DEATH(openStore(true, [](Database& db, PlayListManager&) { db.removeItems(db.getPlayQueue(), QList<int>()); }),
                 "Unable to remove items: the index list is empty");
}

TEST(PlayListManagerDeathTest, brokenStoreOrMisuseStopsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    WorkDir dir;
    LogCapture quiet;
    {
        Database db(0, false);
        const CollectionRecord col = db.createCollection("c");
        // The plain connection does not enforce foreign keys.
        ASSERT_TRUE(StoreReader().exec("INSERT INTO collections_playlists(collection, playlist) VALUES(?1, 77)", {col.uid}));
    }
    EXPECT_DEATH(openStore(true), "Unknown playlist in collection");
    ASSERT_TRUE(StoreReader().exec("DELETE FROM collections"));
    EXPECT_DEATH(openStore(true, [](Database&, PlayListManager& manager) { manager.getCollections(0, 0); }), "Collection index out of range");
}
