#include "Database.h"
#include "TestSupport.h"
#include "PlayList.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <random>

using log4cplus::ERROR_LOG_LEVEL;
using log4cplus::TRACE_LOG_LEVEL;

namespace {

class PlayListTest : public ::testing::Test
{
protected:
    PlayListTest()
        : m_db(0, false)
    {
        qRegisterMetaType<QList<int>>();
    }

    // A playlist object over a new store row holding t0..t<count-1>.
    std::unique_ptr<PlayList> filled(int count)
    {
        auto pl = std::make_unique<PlayList>(&m_db, m_db.createPlayList(QString("p")));
        if (count > 0)
            pl->addItems(VexaPlayListAddPosition::Append, TestItems::make(count, "t"));
        return pl;
    }

    QStringList titles(PlayListBase& pl)
    {
        QStringList result;
        const QList<VexaPlayListItem> items = pl.getItems(0, pl.getSize());
        for (const VexaPlayListItem& item : items)
            result.append(item.title());
        return result;
    }

    int storedLastPlayed(const PlayListBase& pl)
    {
        return m_store.scalar("SELECT lastPlayedIndex FROM playlists WHERE uid = ?1", {pl.getUid()});
    }

    int writes(const PlayListBase& pl)
    {
        return m_log.count(TRACE_LOG_LEVEL, QString("Enter Database::updatePlayList: pl=%1").arg(pl.getUid()));
    }

    WorkDir m_dir;
    LogCapture m_log;
    Database m_db;
    StoreReader m_store;
};

QList<QPair<int, int>> moves(const QSignalSpy& spy)
{
    QList<QPair<int, int>> result;
    for (const QList<QVariant>& args : spy)
        result.append(qMakePair(args.at(0).toInt(), args.at(1).toInt()));
    return result;
}

} // namespace

TEST_F(PlayListTest, contentChangesAreSignalledWithTheirArguments)
{
    auto pl = filled(0);
    QSignalSpy added(pl.get(), &PlayListBase::itemsAdded);
    QSignalSpy removed(pl.get(), &PlayListBase::itemsRemoved);
    QSignalSpy cleared(pl.get(), &PlayListBase::itemsCleared);

    EXPECT_EQ(pl->addItems(VexaPlayListAddPosition::Next, TestItems::make(4, "t")), 4);
    EXPECT_EQ(pl->addItems(VexaPlayListAddPosition::Append, TestItems::make(2, "u")), 2);
    ASSERT_EQ(added.count(), 2);
    EXPECT_EQ(added.at(0), QVariantList({"next", 0, 4}));
    EXPECT_EQ(added.at(1), QVariantList({"append", 4, 2}));
    EXPECT_EQ(pl->getSize(), 6);

    pl->setLastSequenceNumber(3);
    EXPECT_EQ(pl->addItems(VexaPlayListAddPosition::Now, TestItems::make(1, "n")), 1);
    EXPECT_EQ(added.at(2), QVariantList({"now", 4, 1}));
    EXPECT_EQ(titles(*pl), QStringList({"t0", "t1", "t2", "t3", "n0", "u0", "u1"}));

    // Unsorted indices are sorted; two of them lie before the last played entry.
    EXPECT_EQ(pl->removeItems({5, 0, 2}), 3);
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed.at(0).at(0).value<QList<int>>(), QList<int>({0, 2, 5}));
    EXPECT_EQ(removed.at(0).at(1).toInt(), 3);
    EXPECT_EQ(pl->getLastSequenceNumber(), 1);
    EXPECT_EQ(storedLastPlayed(*pl), 1);
    EXPECT_EQ(pl->getSize(), 4);
    EXPECT_EQ(titles(*pl), QStringList({"t1", "t3", "n0", "u1"}));

    // The last played entry itself goes: the index now names the one after it.
    EXPECT_EQ(pl->removeItems({1}), 1);
    EXPECT_EQ(pl->getLastSequenceNumber(), 1);
    EXPECT_EQ(removed.count(), 2);

    // A failed removal changes nothing and says nothing.
    EXPECT_EQ(pl->removeItems({9}), -1);
    EXPECT_EQ(removed.count(), 2);
    EXPECT_EQ(pl->getSize(), 3);

    EXPECT_TRUE(pl->clearItems());
    EXPECT_EQ(cleared.count(), 1);
    EXPECT_EQ(pl->getSize(), 0);
    EXPECT_EQ(pl->getLastSequenceNumber(), -1);
    EXPECT_TRUE(m_store.entries(pl->getUid()).isEmpty());

    pl->setLastSequenceNumber(2);
    EXPECT_TRUE(pl->clearItems());
    EXPECT_EQ(cleared.count(), 1);
    EXPECT_EQ(storedLastPlayed(*pl), -1);
}

TEST_F(PlayListTest, settingsWriteAndSignalOnlyOnChangeButNamesAlways)
{
    auto pl = filled(0);
    QSignalSpy shuffle(pl.get(), &PlayListBase::shuffleChanged);
    QSignalSpy repeat(pl.get(), &PlayListBase::repeatAllChanged);
    QSignalSpy name(pl.get(), &PlayListBase::nameChanged);

    pl->setShuffle(true);
    pl->setShuffle(true);
    EXPECT_EQ(shuffle.count(), 1);
    EXPECT_EQ(shuffle.at(0), QVariantList({true}));
    EXPECT_EQ(writes(*pl), 1);

    pl->setRepeatAll(true);
    pl->setRepeatAll(false);
    EXPECT_EQ(repeat.count(), 2);

    pl->setName(QString("p"));
    pl->setName(QString("p"));
    EXPECT_EQ(name.count(), 2);
    EXPECT_EQ(name.at(0), QVariantList({"p"}));
    EXPECT_EQ(writes(*pl), 5);
    EXPECT_EQ(m_store.rows("SELECT name, shuffle, repeatAll FROM playlists WHERE uid = ?1", {pl->getUid()}),
              QStringList({"p|1|0"}));

    // A playlist the store does not know keeps the new value in its cache.
    PlayListRecord ghostRecord;
    ghostRecord.uid = 4242;
    PlayList ghost(&m_db, ghostRecord);
    EXPECT_TRUE(ghost.valid());
    EXPECT_FALSE(PlayList(&m_db, PlayListRecord()).valid());
    ghost.setShuffle(true);
    EXPECT_TRUE(ghost.getShuffle());
    EXPECT_FALSE(ghost.updateDatabase());
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, "Error updating PlayList: no such uid in DB"));
}

// Where the last played entry goes on a move is covered by the random edits below.
TEST_F(PlayListTest, movingSignalsOnlyRealMovesAndClampsPositions)
{
    auto pl = filled(8);
    QSignalSpy moved(pl.get(), &PlayListBase::itemMoved);
    pl->setLastSequenceNumber(3);
    EXPECT_TRUE(pl->moveItem(5, 1));
    EXPECT_EQ(moved.last(), QVariantList({5, 1}));
    EXPECT_EQ(storedLastPlayed(*pl), 4);
    // No move, no signal; positions past the end are clamped to the count.
    EXPECT_TRUE(pl->moveItem(2, 2));
    EXPECT_TRUE(pl->moveItem(9, 8));
    EXPECT_EQ(moved.count(), 1);
    EXPECT_TRUE(pl->moveItem(12, 1));
    EXPECT_EQ(moved.last(), QVariantList({8, 1}));
}

TEST_F(PlayListTest, moveItemsPairsIndicesWithTargetsByDirection)
{
    auto pl = filled(8);
    QSignalSpy moved(pl.get(), &PlayListBase::itemMoved);

    EXPECT_FALSE(pl->moveItems({}, 4));
    EXPECT_TRUE(moved.isEmpty());

    EXPECT_TRUE(pl->moveItems({0, 1}, 4));
    EXPECT_EQ(moves(moved), (QList<QPair<int, int>>{{1, 3}, {0, 4}}));
    EXPECT_EQ(titles(*pl), QStringList({"t2", "t3", "t1", "t4", "t0", "t5", "t6", "t7"}));

    moved.clear();
    EXPECT_TRUE(pl->moveItems({5, 6}, 1));
    EXPECT_EQ(moves(moved), (QList<QPair<int, int>>{{5, 1}, {6, 2}}));
    EXPECT_EQ(titles(*pl), QStringList({"t2", "t5", "t6", "t3", "t1", "t4", "t0", "t7"}));

    // A failing move ends the batch; the moves before it stay.
    StoreReader store;
    ASSERT_TRUE(store.exec("CREATE TRIGGER failMove BEFORE UPDATE ON playlists_items"
                           " WHEN NEW.sequenceNumber = 2 AND OLD.sequenceNumber = 15"
                           " BEGIN SELECT RAISE(ABORT, 'injected'); END"));
    moved.clear();
    EXPECT_FALSE(pl->moveItems({6, 7}, 1));
    EXPECT_EQ(moves(moved), (QList<QPair<int, int>>{{6, 1}}));
    EXPECT_EQ(titles(*pl), QStringList({"t2", "t0", "t5", "t6", "t3", "t1", "t4", "t7"}));
}

// Random adds, moves, removals, clears and plays against a model that follows
// the last played entry itself: after every step the playlist's index must
// name the entry the model names.
TEST_F(PlayListTest, randomEditsKeepLastPlayedIndexOnItsEntry)
{
    LogCapture quiet("PlayLists", log4cplus::INFO_LOG_LEVEL);
    auto pl = filled(0);
    QStringList model;
    int last = -1;
    std::mt19937 random(7331);
    int nextTitle = 0;

    for (int step = 0; step < 150; ++step) {
        const int size = model.size();
        const int action = size == 0 ? 0 : int(random() % 10);
        if (action <= 3) {
            auto position = VexaPlayListAddPosition::Enum(random() % 3);
            // Once the last played entry was removed from the end, the index
            // points past it; adding behind it would leave a hole, so append.
            if (size > 0 && last >= size)
                position = VexaPlayListAddPosition::Append;
            const int count = 1 + int(random() % 3);
            QList<VexaPlayListItem> items;
            QStringList names;
            for (int i = 0; i < count; ++i) {
                names.append(QString("i%1").arg(nextTitle++));
                items.append(TestItems::item(names.last()));
            }
            // New entries go behind the last played one or at the end, so
            // the index keeps naming the same entry.
            const int at = (position != VexaPlayListAddPosition::Append && last >= 0 && size > 0) ? last + 1 : size;
            ASSERT_EQ(pl->addItems(position, items), count);
            for (int i = 0; i < count; ++i)
                model.insert(at + i, names.at(i));
        } else if (action <= 5) {
            const int from = int(random() % size);
            const int to = int(random() % size);
            const QString played = (last >= 0 && last < size) ? model.at(last) : QString();
            ASSERT_TRUE(pl->moveItem(from, to));
            model.move(from, to);
            if (!played.isNull())
                last = model.indexOf(played);
        } else if (action <= 7) {
            QList<int> indices;
            for (int i = 0; i < size; ++i) {
                if (random() % 3 == 0)
                    indices.append(i);
            }
            if (indices.isEmpty())
                indices.append(int(random() % size));
            std::shuffle(indices.begin(), indices.end(), random);
            ASSERT_EQ(pl->removeItems(indices), indices.size());
            // The index follows the entries that survive in front of it.
            if (last >= 0) {
                int survivorsBefore = 0;
                for (int i = 0; i < last; ++i)
                    survivorsBefore += indices.contains(i) ? 0 : 1;
                last = survivorsBefore;
            }
            std::sort(indices.begin(), indices.end());
            for (int i = indices.size() - 1; i >= 0; --i)
                model.removeAt(indices.at(i));
        } else if (action == 8) {
            last = int(random() % size);
            pl->setLastSequenceNumber(last);
        } else {
            ASSERT_TRUE(pl->clearItems());
            model.clear();
            last = -1;
        }
        ASSERT_EQ(pl->getSize(), model.size()) << "step " << step;
        ASSERT_EQ(pl->getLastSequenceNumber(), last) << "step " << step << " action " << action;
        ASSERT_EQ(storedLastPlayed(*pl), last) << "step " << step;
        ASSERT_EQ(titles(*pl), model) << "step " << step;
    }
}

TEST_F(PlayListTest, slotsMayCallBackIntoThePlaylistWhileItSignals)
{
    auto pl = filled(2);
    int seen = -1;
    QObject::connect(pl.get(), &PlayListBase::itemsAdded, [&](const QString&, int first, int count) {
        // Runs with the playlist's lock held.
        seen = pl->getItems(first, first + count - 1).size();
        pl->setLastSequenceNumber(first);
    });
    EXPECT_EQ(pl->addItems(VexaPlayListAddPosition::Append, TestItems::make(3, "x")), 3);
    EXPECT_EQ(seen, 3);
    EXPECT_EQ(pl->getLastSequenceNumber(), 2);
}

TEST_F(PlayListTest, itemRolesPointAtTheItemAndThisPlayLogic)
{
    auto pl = filled(0);
    VexaPlayListItem item;
    item.setUid(42);
    item.setSequenceNumber(7);
    item.setVexaRoles(QString("{\"title\":\"Song\",\"type\":\"audio\",\"extra\":1,"
                                     "\"mediaData\":{\"metaData\":{\"artist\":\"A\"},"
                                     "\"resources\":[{\"uri\":\"http://x/y.mp3\"}]}}"));
    const VexaRoles roles = pl->itemToVexaRoles(item);
    EXPECT_EQ(roles.title(), QString("Song"));
    EXPECT_EQ(roles.id(), QString("42"));
    EXPECT_EQ(roles.value().type(), QString("i32_"));
    EXPECT_EQ(roles.value().i32_(), 7);
    EXPECT_EQ(roles.path().toEncoded(), QString("playlists:/item/42"));
    EXPECT_EQ(roles.mediaData().metaData().playLogicPath().toEncoded(), QString("playlists:/playlogic"));
    EXPECT_EQ(roles.mediaData().metaData().artist(), QString("A"));
    EXPECT_EQ(roles.value(QString("extra")).toInt(), 1);

    // Without meta data no play-logic path is made up.
    item.setVexaRoles(QString("{\"title\":\"Bare\",\"mediaData\":{\"resources\":[]}}"));
    EXPECT_FALSE(pl->itemToVexaRoles(item).mediaData().contains(VexaMediaData::MetaData()));

    item.setVexaRoles(QString("{not json"));
    EXPECT_TRUE(pl->itemToVexaRoles(item).isEmpty());
    const QStringList errors = m_log.messages(ERROR_LOG_LEVEL);
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(errors.first().startsWith("Failed to parse data, error: "));
}
