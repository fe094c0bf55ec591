#include "Database.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <random>

using log4cplus::ERROR_LOG_LEVEL;
using log4cplus::TRACE_LOG_LEVEL;

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

} // namespace

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
    EXPECT_EQ(m_log.startingWith("uid: "),
              QStringList({QStringLiteral("uid: %1 seqNum: 0 name: t0").arg(items.at(0).uid()),
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

    // Renumbering after the delete fails on its second entry.
    ASSERT_TRUE(store.exec("CREATE TRIGGER failRenumber BEFORE UPDATE ON playlists_items"
                           " WHEN OLD.sequenceNumber = 3 AND NEW.sequenceNumber = 2"
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
