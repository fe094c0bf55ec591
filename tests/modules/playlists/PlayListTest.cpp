#include "CollectionBase.h"
#include "Database.h"
#include "PlayList.h"
#include "PlayListBase.h"
#include "PlayListManager.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <QSignalSpy>

#include <random>

using log4cplus::DEBUG_LOG_LEVEL;
using log4cplus::ERROR_LOG_LEVEL;
using log4cplus::TRACE_LOG_LEVEL;
using log4cplus::WARN_LOG_LEVEL;

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
    EXPECT_EQ(m_store.rows("SELECT name, shuffle, repeatAll FROM playlists WHERE uid = ?1", {pl->getUid()}), QStringList({"p|1|0"}));

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

namespace {

QStringList names(const QList<PlayListBase*>& list)
{
    QStringList result;
    for (const PlayListBase* pl : list)
        result.append(pl->getName());
    return result;
}

QList<int> uids(const QList<CollectionBase*>& list)
{
    QList<int> result;
    for (const CollectionBase* col : list)
        result.append(col->getUid());
    return result;
}

// Locale order is tested under one fixed locale, whatever the machine has.
class FixedLocale
{
public:
    explicit FixedLocale(const QLocale& locale)
        : m_previous(QLocale())
    {
        QLocale::setDefault(locale);
    }
    ~FixedLocale() { QLocale::setDefault(m_previous); }

private:
    QLocale m_previous;
};

class PlayListManagerTest : public ::testing::Test
{
protected:
    WorkDir m_dir;
    LogCapture m_log;
};

} // namespace

TEST_F(PlayListManagerTest, loadingEmptiesTheQueueAndResolvesCollections)
{
    int first = 0;
    {
        Database db(0, false);
        PlayListRecord queue = db.getPlayQueue();
        int added = 0;
        db.addItems(queue, VexaPlayListAddPosition::Append, TestItems::make(3, "q"), &added);
        queue.lastPlayedIndex = 2;
        db.updatePlayList(queue);
        first = db.createPlayList(QString("b")).uid;
        db.createPlayList(QString("a"));
        PlayListRecord filled = db.getPlayLists().last();
        db.addItems(filled, VexaPlayListAddPosition::Append, TestItems::make(4, "b"), &added);
        const CollectionRecord col = db.createCollection(QString("c"));
        db.addToCollection(col, first);
        db.addToCollection(col, 0);
        db.createCollection(QString("empty"));
    }

    Database db(0, false);
    PlayListManager manager(&db);
    StoreReader store;
    PlayListBase* queue = manager.getPlayQueue();
    EXPECT_EQ(queue->getUid(), 0);
    EXPECT_EQ(queue->getSize(), 0);
    EXPECT_EQ(queue->getLastSequenceNumber(), -1);
    EXPECT_TRUE(store.entries(0).isEmpty());
    EXPECT_EQ(store.scalar("SELECT lastPlayedIndex FROM playlists WHERE uid = 0"), -1);
    EXPECT_EQ(manager.getPlayListByUid(0), queue);
    EXPECT_FALSE(manager.getAllPlayList().contains(queue));

    EXPECT_EQ(names(manager.getAllPlayList()), QStringList({"a", "b"}));
    EXPECT_EQ(manager.getPlayListByUid(first)->getSize(), 4);
    EXPECT_EQ(manager.getPlayListByUid(999), nullptr);

    ASSERT_EQ(manager.getAllCollection().size(), 2);
    CollectionBase* col = manager.getAllCollection().at(0);
    EXPECT_EQ(col->getName(), QString("c"));
    const QList<PlayListBase*> members = col->getPlayLists();
    EXPECT_EQ(members.size(), 2);
    EXPECT_TRUE(members.contains(queue) && members.contains(manager.getPlayListByUid(first)));
    EXPECT_TRUE(manager.getAllCollection().at(1)->getPlayLists().isEmpty());
    EXPECT_EQ(manager.getCollectionByUid(col->getUid()), col);

    EXPECT_EQ(manager.getPlayListsCount(), 2);
    EXPECT_EQ(manager.getPlaylistsItemsCount(), 4);
    EXPECT_EQ(manager.getCollectionsCount(), 2);
    const VexaPlayListItem item = manager.getPlayListByUid(first)->getItems(1, 1).first();
    EXPECT_EQ(manager.getPlayListItemByUid(item.uid()).title(), QString("b1"));
}

TEST_F(PlayListManagerTest, createdElementsGoInLocaleNameOrder)
{
    FixedLocale english(QLocale(QLocale::English, QLocale::UnitedStates));
    Database db(0, false);
    PlayListManager manager(&db);
    QSignalSpy created(&manager, &PlayListManager::playlistCreated);

    QList<PlayListBase*> made;
    for (const char* name : {"b", "Zebra", "A", "a", "\xc3\x84pfel", "a"})
        made.append(manager.createPlayList(QString::fromUtf8(name)));
    EXPECT_EQ(names(manager.getAllPlayList()), QStringList({"a", "a", "A", QString::fromUtf8("\xc3\x84pfel"), "b", "Zebra"}));
    // Equal names keep their order of arrival.
    EXPECT_EQ(manager.getAllPlayList().at(0), made.at(3));
    EXPECT_EQ(manager.getAllPlayList().at(1), made.at(5));
    ASSERT_EQ(created.count(), 6);
    EXPECT_EQ(created.at(1), QVariantList({made.at(1)->getUid()}));

    // Renaming does not re-sort.
    made.at(4)->setName(QString("zzz"));
    EXPECT_EQ(manager.getAllPlayList().at(3), made.at(4));

    CollectionBase* second = manager.createCollection(QString("second"));
    CollectionBase* first = manager.createCollection(QString("First"));
    EXPECT_EQ(uids(manager.getAllCollection()), QList<int>({first->getUid(), second->getUid()}));

    // Members are kept in name order too.
    QSignalSpy added(first, &CollectionBase::playlistAdded);
    EXPECT_TRUE(first->addPlayList(made.at(0)));     // b
    EXPECT_TRUE(first->addPlayList(made.at(2)));     // A
    EXPECT_TRUE(first->addPlayList(made.at(1)));     // Zebra
    EXPECT_EQ(names(first->getPlayLists()), QStringList({"A", "b", "Zebra"}));
    EXPECT_EQ(added.count(), 3);
}

TEST_F(PlayListManagerTest, collectionsAnswerWithTheStoresVerdict)
{
    Database db(0, false);
    PlayListManager manager(&db);
    QSignalSpy created(&manager, &PlayListManager::collectionCreated);
    PlayListBase* pl = manager.createPlayList(QString("p"));
    CollectionBase* col = manager.createCollection(QString("c"));
    ASSERT_NE(col, nullptr);
    EXPECT_EQ(created.at(0), QVariantList({col->getUid()}));
    QSignalSpy added(col, &CollectionBase::playlistAdded);
    QSignalSpy removed(col, &CollectionBase::playlistRemoved);

    EXPECT_TRUE(col->addPlayList(pl));
    EXPECT_FALSE(col->addPlayList(pl));
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, QString("Unable to add pl to collection, this=%1 pl=%2").arg(col->getUid())
                                                     .arg(pl->getUid())));
    EXPECT_EQ(added.count(), 1);
    EXPECT_EQ(col->getPlayLists().size(), 1);

    EXPECT_TRUE(col->removePlayList(pl));
    EXPECT_FALSE(col->removePlayList(pl));
    EXPECT_EQ(removed.count(), 1);
    EXPECT_TRUE(col->getPlayLists().isEmpty());

    const int uid = col->getUid();
    QSignalSpy deleted(&manager, &PlayListManager::collectionDeleted);
    EXPECT_TRUE(manager.deleteCollection(uid));
    EXPECT_EQ(deleted.at(0), QVariantList({uid}));
    EXPECT_TRUE(m_log.contains(DEBUG_LOG_LEVEL, QString("Deleted collection uid=%1").arg(uid)));
    EXPECT_EQ(manager.getCollectionByUid(uid), nullptr);
    EXPECT_FALSE(manager.deleteCollection(42));
    EXPECT_TRUE(m_log.contains(WARN_LOG_LEVEL, "Can't delete non-existant collection uid=42"));
    EXPECT_EQ(deleted.count(), 1);
    EXPECT_EQ(manager.getCollectionsCount(), 0);
}

TEST_F(PlayListManagerTest, deletingAPlaylistLeavesItsCollectionsFirst)
{
    Database db(0, false);
    PlayListManager manager(&db);
    PlayListBase* pl = manager.createPlayList(QString("p"));
    PlayListBase* other = manager.createPlayList(QString("o"));
    pl->addItems(VexaPlayListAddPosition::Append, TestItems::make(2, "t"));
    CollectionBase* one = manager.createCollection(QString("one"));
    CollectionBase* two = manager.createCollection(QString("two"));
    CollectionBase* unrelated = manager.createCollection(QString("unrelated"));
    one->addPlayList(pl);
    two->addPlayList(other);
    two->addPlayList(pl);
    unrelated->addPlayList(other);

    QList<QString> order;
    QObject::connect(one, &CollectionBase::playlistRemoved, [&] { order.append("one"); });
    QObject::connect(two, &CollectionBase::playlistRemoved, [&] { order.append("two"); });
    QObject::connect(unrelated, &CollectionBase::playlistRemoved, [&] { order.append("unrelated"); });
    QObject::connect(&manager, &PlayListManager::playlistDeleted, [&](int plid) {
        order.append(QString("deleted %1").arg(plid));
    });

    const int uid = pl->getUid();
    EXPECT_TRUE(manager.deletePlayList(uid));
    EXPECT_EQ(order, QList<QString>({"one", "two", QString("deleted %1").arg(uid)}));
    EXPECT_TRUE(one->getPlayLists().isEmpty());
    EXPECT_EQ(two->getPlayLists(), QList<PlayListBase*>({other}));
    EXPECT_EQ(manager.getPlayListByUid(uid), nullptr);
    EXPECT_EQ(manager.getAllPlayList(), QList<PlayListBase*>({other}));
    EXPECT_EQ(manager.getPlaylistsItemsCount(), 0);
    EXPECT_TRUE(m_log.contains(DEBUG_LOG_LEVEL, QString("Deleted PlayList uid=%1").arg(uid)));

    EXPECT_FALSE(manager.deletePlayList(uid));
    EXPECT_TRUE(m_log.contains(WARN_LOG_LEVEL, QString("Can't delete non-existant PlayList uid=%1").arg(uid)));

    // The store refuses the play queue; the manager keeps it.
    QSignalSpy deleted(&manager, &PlayListManager::playlistDeleted);
    EXPECT_FALSE(manager.deletePlayList(0));
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, "Unable to delete PlayList uid=0 from database"));
    EXPECT_EQ(deleted.count(), 0);
    EXPECT_NE(manager.getPlayQueue(), nullptr);
}

TEST_F(PlayListManagerTest, collectionSlicesAreClampedIntoTheList)
{
    Database db(0, false);
    PlayListManager manager(&db);
    const QList<int> made = {manager.createCollection(QString("a"))->getUid(), manager.createCollection(QString("b"))->getUid(),
                             manager.createCollection(QString("c"))->getUid()};
    EXPECT_EQ(uids(manager.getCollections(-5, 100)), made);
    EXPECT_EQ(uids(manager.getCollections(2, 0)), QList<int>({made.at(0)}));
    EXPECT_EQ(uids(manager.getCollections(1, 1)), QList<int>({made.at(1)}));
    EXPECT_EQ(uids(manager.getCollections(7, 9)), QList<int>({made.at(2)}));
    EXPECT_EQ(uids(manager.getCollections(1, -3)), QList<int>({made.at(0)}));
}
