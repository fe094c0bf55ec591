#include "Database.h"
#include "PlayListManager.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

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
