#include "TestSupport.h"
#include "Sqlite3Statement.h"

#include <gtest/gtest.h>

#include <sqlite3.h>

using log4cplus::ERROR_LOG_LEVEL;
using log4cplus::FATAL_LOG_LEVEL;

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

    Sqlite3Statement* select =
        Sqlite3Statement::create(db, QStringLiteral("SELECT a, b, n, NULL FROM t"), QStringLiteral("select"));
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
