#include "Database.h"
#include "PlayList.h"
#include "PlayListBase.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>

namespace {

// A store in a directory of its own, with a plain connection beside it to
// read rows back and to plant faults.
class StoreTest : public ::testing::Test
{
protected:
    // A playlist object over a new store row holding t0..t<count-1>.
    std::unique_ptr<PlayList> filled(int count, const QString& name = QStringLiteral("p"))
    {
        auto pl = std::make_unique<PlayList>(&m_db, m_db.createPlayList(name));
        if (count > 0)
            pl->addItems(VexaPlayListAddPosition::Append, TestItems::make(count, "t"));
        return pl;
    }

    // "seq|title" rows as StoreReader::entries gives them for titles in order.
    static QStringList numbered(const QStringList& titles)
    {
        QStringList rows;
        for (int i = 0; i < titles.size(); ++i)
            rows.append(QString::number(i) + QLatin1Char('|') + titles.at(i));
        return rows;
    }

    int orphanItems() const
    {
        return m_store.scalar("SELECT COUNT(*) FROM items WHERE uid NOT IN (SELECT item FROM playlists_items)");
    }

    WorkDir m_dir;
    LogCapture m_quiet{"PlayLists", log4cplus::WARN_LOG_LEVEL};
    Database m_db{0, false};
    StoreReader m_store;
};

} // namespace

// Every edit, checked against a plain list: the entries stay numbered 0..n-1
// in order, the play position stays on its entry, and no item outlives its
// last entry.
TEST_F(StoreTest, randomEditsAgreeWithAReferenceModel)
{
    auto pl = filled(0);
    QStringList model;
    int last = -1;
    std::mt19937 random(7331);
    int nextTitle = 0;

    for (int step = 0; step < 200; ++step) {
        const int size = model.size();
        const int action = size == 0 ? 0 : int(random() % 10);
        if (action <= 3) {
            auto position = VexaPlayListAddPosition::Enum(random() % 3);
            // A position left past the end (its entry removed) appends.
            const bool afterLast = position != VexaPlayListAddPosition::Append && last >= 0 && last < size;
            const int count = 1 + int(random() % 3);
            QList<VexaPlayListItem> items;
            QStringList names;
            for (int i = 0; i < count; ++i) {
                names.append(QString("i%1").arg(nextTitle++));
                items.append(TestItems::item(names.last()));
            }
            if (!afterLast)
                position = VexaPlayListAddPosition::Append;
            const int at = afterLast ? last + 1 : size;
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
            // The position follows the entries that survive in front of it.
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
        ASSERT_EQ(m_store.entries(pl->getUid()), numbered(model)) << "step " << step << " action " << action;
        ASSERT_EQ(pl->getSize(), model.size()) << "step " << step;
        ASSERT_EQ(pl->getLastSequenceNumber(), last) << "step " << step;
        ASSERT_EQ(m_store.scalar("SELECT lastPlayedIndex FROM playlists WHERE uid = ?1", {pl->getUid()}), last);
        ASSERT_EQ(orphanItems(), 0) << "step " << step;
    }
}

// A fault half way through an operation leaves the store as it was: a
// trigger makes one particular row change fail.
TEST_F(StoreTest, aFailureInsideAnOperationRollsEverythingBack)
{
    auto pl = filled(5);
    pl->setLastSequenceNumber(1);
    const QStringList before = m_store.snapshot();
    const struct
    {
        const char* trigger;
        std::function<bool()> operation;
    } faults[] = {
        {"BEFORE INSERT ON playlists_items WHEN NEW.sequenceNumber = 3",
         [&] { return pl->addItems(VexaPlayListAddPosition::Next, TestItems::make(3, "n")) > 0; }},
        // The moved entry lands (parked at 1+5) on 3.
        {"BEFORE UPDATE ON playlists_items WHEN OLD.sequenceNumber = 6 AND NEW.sequenceNumber = 3",
         [&] { return pl->moveItem(1, 3); }},
        // Renumbering after the delete fails when the second entry lands.
        {"BEFORE UPDATE ON playlists_items WHEN NEW.sequenceNumber = 2",
         [&] { return pl->removeItems({1}) > 0; }},
    };
    for (const auto& fault : faults) {
        const QByteArray create = QByteArray("CREATE TRIGGER fault ") + fault.trigger
            + " BEGIN SELECT RAISE(ABORT, 'injected'); END";
        ASSERT_TRUE(m_store.exec(create.constData()));
        EXPECT_FALSE(fault.operation()) << fault.trigger;
        EXPECT_EQ(m_store.snapshot(), before) << fault.trigger;
        ASSERT_TRUE(m_store.exec("DROP TRIGGER fault"));
    }
    EXPECT_EQ(pl->addItems(VexaPlayListAddPosition::Next, TestItems::make(3, "n")), 3);
    EXPECT_EQ(m_store.entries(pl->getUid()), numbered({"t0", "t1", "n0", "n1", "n2", "t2", "t3", "t4"}));
}

// The log a large commit filled is copied into the store's file in the
// background: without another command, and without the log growing for ever.
TEST_F(StoreTest, aLargeCommitReachesTheStoreFileWithoutAnotherCommand)
{
    const QString file = QStringLiteral("data-rw/playlists/playlists.sqlite");
    const qint64 before = QFileInfo(file).size();
    filled(30000);
    QElapsedTimer waited;
    waited.start();
    while (QFileInfo(file).size() < before + 3 * 1024 * 1024 && waited.elapsed() < 10000)
        QThread::msleep(10);
    EXPECT_GE(QFileInfo(file).size(), before + 3 * 1024 * 1024);
}

// A store that cannot be opened ends the process rather than run without one.
TEST(StoreDeathTest, aStoreThatCannotBeOpenedStopsTheProcess)
{
    // "threadsafe" runs the test binary again for the child, which in a cross
    // build only the emulator can do: there the child is forked without exec.
    GTEST_FLAG_SET(death_test_style, QByteArray(VEXA_EMULATOR).isEmpty() ? "threadsafe" : "fast");
    WorkDir dir;
    ASSERT_TRUE(QDir().mkpath("data-rw/playlists"));
    QFile file("data-rw/playlists/playlists.sqlite");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(4096, 'x'));
    file.close();
    EXPECT_DEATH(
        {
            LogCapture log;
            log.echoToStderr();
            Database db(0, false);
        },
        "file is not a database");
}
