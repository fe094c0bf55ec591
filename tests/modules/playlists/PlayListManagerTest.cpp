#include "CollectionBase.h"
#include "Database.h"
#include "TestSupport.h"
#include "PlayListBase.h"
#include "PlayListManager.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <QSignalSpy>

using log4cplus::DEBUG_LOG_LEVEL;
using log4cplus::ERROR_LOG_LEVEL;
using log4cplus::WARN_LOG_LEVEL;

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
    EXPECT_EQ(names(manager.getAllPlayList()),
              QStringList({"a", "a", "A", QString::fromUtf8("\xc3\x84pfel"), "b", "Zebra"}));
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
    EXPECT_TRUE(m_log.contains(ERROR_LOG_LEVEL, QString("Unable to add pl to collection, this=%1 pl=%2")
                                                     .arg(col->getUid())
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
    const QList<int> made = {manager.createCollection(QString("a"))->getUid(),
                             manager.createCollection(QString("b"))->getUid(),
                             manager.createCollection(QString("c"))->getUid()};
    EXPECT_EQ(uids(manager.getCollections(-5, 100)), made);
    EXPECT_EQ(uids(manager.getCollections(2, 0)), QList<int>({made.at(0)}));
    EXPECT_EQ(uids(manager.getCollections(1, 1)), QList<int>({made.at(1)}));
    EXPECT_EQ(uids(manager.getCollections(7, 9)), QList<int>({made.at(2)}));
    EXPECT_EQ(uids(manager.getCollections(1, -3)), QList<int>({made.at(0)}));
}
