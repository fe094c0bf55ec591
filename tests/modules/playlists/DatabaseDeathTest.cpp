#include "Database.h"
#include "LogCapture.h"
#include "WorkDir.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

namespace {

// The child of a death test writes the module's log to stderr, where
// EXPECT_DEATH looks for the FATAL line.
void openStore()
{
    LogCapture log;
    log.echoToStderr();
    Database db(0, false);
}

} // namespace

TEST(DatabaseDeathTest, storeThatCannotBeOpenedStopsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    {
        WorkDir dir;
        QFile blocker(QStringLiteral("data-rw"));
        ASSERT_TRUE(blocker.open(QIODevice::WriteOnly)); // a file where the directory should be
        blocker.close();
        EXPECT_DEATH(openStore(), "Unable to create directory for PlayList database file");
    }
    {
        WorkDir dir;
        ASSERT_TRUE(QDir().mkpath(QStringLiteral("data-rw/playlists")));
        // A link into a directory that does not exist can be neither opened nor created.
        ASSERT_TRUE(QFile::link(QStringLiteral("missing/dir/store.sqlite"),
                                QStringLiteral("data-rw/playlists/playlists.sqlite")));
        EXPECT_DEATH(openStore(), "Unable to open PlayList database file: unable to open database file");
    }
    {
        WorkDir dir;
        ASSERT_TRUE(QDir().mkpath(QStringLiteral("data-rw/playlists")));
        QFile garbage(QStringLiteral("data-rw/playlists/playlists.sqlite"));
        ASSERT_TRUE(garbage.open(QIODevice::WriteOnly));
        garbage.write(QByteArray(4096, 'x'));
        garbage.close();
        EXPECT_DEATH(openStore(), "Unable to create table playlists: file is not a database");
    }
}

TEST(DatabaseDeathTest, removingAnEmptyIndexListStopsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    WorkDir dir;
    EXPECT_DEATH(
        {
            LogCapture log;
            log.echoToStderr();
            Database db(0, false);
            db.removeItems(db.getPlayQueue(), QList<int>());
        },
        "Unable to remove items: the index list is empty");
}
