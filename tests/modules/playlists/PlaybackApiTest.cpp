#include "ApiCalls.h"
#include "HostProcess.h"

#include <QElapsedTimer>
#include <QThread>

#include <gtest/gtest.h>

#include <functional>

namespace {

const QString kStatus = QStringLiteral("player:/status");
const QString kQueue = QStringLiteral("playlists:/queue");

// An item as clients add it: only the JSON text of its roles.
QVariantHash item(const QString& title, int seconds, const QString& uri = QString())
{
    const QVariantHash resource{{QStringLiteral("uri"), uri.isEmpty() ? QStringLiteral("test://") + title : uri},
                                {QStringLiteral("duration"), seconds}};
    const QVariantHash roles{{QStringLiteral("title"), title},
                             {QStringLiteral("type"), QStringLiteral("audio")},
                             {QStringLiteral("mediaData"), QVariantHash{{QStringLiteral("resources"), QVariantList{resource}}}}};
    return {{QStringLiteral("vexaRoles"), QString::fromUtf8(HttpClient::json(roles))}};
}

QString state(const QVariantHash& status)
{
    return status.value(QStringLiteral("state")).toString();
}

QString title(const QVariantHash& status)
{
    return status.value(QStringLiteral("track")).toHash().value(QStringLiteral("title")).toString();
}

// The playlists module and the test module in the real host, its player fast.
class PlaybackApi : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_host = std::make_unique<HostProcess>(QStringList{HostProcess::playlistsModule(), QStringLiteral("libvexa_testmod.so")},
                                               QStringList{QStringLiteral("--time-scale"), timeScale()});
        QString error;
        ASSERT_TRUE(m_host->start(&error)) << error.toStdString();
    }

    virtual QString timeScale() const { return QStringLiteral("1000"); }
    ApiCalls api() const { return ApiCalls(m_host->client()); }

    HttpReply command(const QString& name, const QVariantHash& value) const
    {
        return api().setData(QStringLiteral("playlists:/") + name, value);
    }
    HttpReply add(int plid, const QString& mode, const QVariantList& items) const
    {
        return command(QStringLiteral("add-external-items"),
                       {{QStringLiteral("plid"), QString::number(plid)}, {QStringLiteral("mode"), mode}, {QStringLiteral("items"), items}});
    }
    int create(const QString& name) const
    {
        const QVariantHash reply = command(QStringLiteral("create-playlist"), {{QStringLiteral("name"), name}}).json().toHash();
        return reply.value(QStringLiteral("result")).toHash().value(QStringLiteral("value")).toHash().value(QStringLiteral("i32_")).toInt();
    }
    HttpReply control(const QString& name) const
    {
        return api().setData(QStringLiteral("player:/control"), QVariantHash{{QStringLiteral("control"), name}});
    }
    QVariantHash status() const
    {
        return api().data(kStatus, QStringLiteral("value")).json().toHash().value(QStringLiteral("value")).toHash();
    }
    // One role of every row of a list.
    QStringList column(const QString& path, const QString& role = QStringLiteral("title")) const
    {
        QStringList values;
        for (const QVariant& row : api().rows(path, role).json().toHash().value(QStringLiteral("rows")).toList())
            values.append(row.toList().value(0).toString());
        return values;
    }
    // Reads the player's status until done holds (true) or ten seconds passed (false).
    bool waitFor(const std::function<bool(const QVariantHash&)>& done) const
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 10000) {
            if (done(status()))
                return true;
            QThread::msleep(5);
        }
        return false;
    }
    bool waitForTitle(const QString& wanted) const
    {
        return waitFor([&](const QVariantHash& s) { return state(s) == QStringLiteral("playing") && title(s) == wanted; });
    }
    // The status values subscription id reports until done holds for them or ten seconds passed.
    QList<QVariantHash> statusesUntil(const QString& id, const std::function<bool(const QList<QVariantHash>&)>& done) const
    {
        QList<QVariantHash> seen;
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 10000) {
            for (const QVariant& event : api().poll(id, 1).json().toList()) {
                seen.append(event.toHash().value(QStringLiteral("value")).toHash());
                if (done(seen))
                    return seen;
            }
        }
        ADD_FAILURE() << "the awaited status did not come";
        return seen;
    }
    // The titles that played, each run of one title counted once.
    static QStringList played(const QList<QVariantHash>& statuses)
    {
        QStringList titles;
        for (const QVariantHash& s : statuses) {
            if (state(s) == QStringLiteral("playing") && (titles.isEmpty() || titles.last() != title(s)))
                titles.append(title(s));
        }
        return titles;
    }

    std::unique_ptr<HostProcess> m_host;
};

// The same at the speed of real time, for what depends on time played.
class PlaybackApiRealTime : public PlaybackApi
{
protected:
    QString timeScale() const override { return QStringLiteral("1"); }
};

} // namespace

TEST_F(PlaybackApi, aQueuePlaysThroughInOrderWithoutGapsAndEnds)
{
    const QString id = api().subscribe({{QStringLiteral("value"), kStatus}});
    const HttpReply added = add(0, QStringLiteral("now"), {item("One", 20), item("Two", 20), item("Three", 20)});
    ASSERT_EQ(added.status, 200) << added.body.constData();
    EXPECT_EQ(added.json().toHash().value(QStringLiteral("xclass")), QStringLiteral("VexaActionReply"));

    const QList<QVariantHash> seen = statusesUntil(id, [](const QList<QVariantHash>& statuses) {
        return !played(statuses).isEmpty() && state(statuses.last()) == QStringLiteral("stopped");
    });
    EXPECT_EQ(played(seen), QStringList({"One", "Two", "Three"}));
    // From the first start to the end the player never stood still.
    const auto first = std::find_if(seen.begin(), seen.end(), [](const QVariantHash& s) { return state(s) == "playing"; });
    EXPECT_EQ(std::count_if(first, seen.end(), [](const QVariantHash& s) { return state(s) != "playing"; }), 1);
}

TEST_F(PlaybackApi, repeatAllWrapsAndRepeatOneRepeats)
{
    ASSERT_EQ(command(QStringLiteral("set-repeat"), {{QStringLiteral("plid"), 0}, {QStringLiteral("mode"), QStringLiteral("all")}}).status, 200);
    const QString id = api().subscribe({{QStringLiteral("value"), kStatus}});
    ASSERT_EQ(add(0, QStringLiteral("now"), {item("A", 30), item("B", 30)}).status, 200);
    const QList<QVariantHash> seen =
        statusesUntil(id, [](const QList<QVariantHash>& statuses) { return played(statuses).size() >= 5; });
    EXPECT_EQ(played(seen), QStringList({"A", "B", "A", "B", "A"}));
    EXPECT_EQ(api().data(QStringLiteral("player:/playMode"), QStringLiteral("value")).json().toHash().value(QStringLiteral("value")).toHash().value(QStringLiteral("playerPlayMode")),
              QStringLiteral("repeatAll"));

    const QVariantHash repeatOne{{QStringLiteral("type"), QStringLiteral("playerPlayMode")},
                                 {QStringLiteral("playerPlayMode"), QStringLiteral("repeatOne")}};
    ASSERT_EQ(api().setData(QStringLiteral("player:/playMode"), repeatOne).status, 200);
    // What was announced before the change may still start; after that one title plays on.
    QThread::msleep(100);
    const QString kept = title(status());
    ASSERT_FALSE(kept.isEmpty());
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 300) {
        const QVariantHash now = status();
        ASSERT_EQ(state(now), QStringLiteral("playing"));
        ASSERT_EQ(title(now), kept);
    }
    EXPECT_EQ(control(QStringLiteral("stop")).status, 200);
}

TEST_F(PlaybackApi, removingThePlayingTrackGoesOnWithTheNext)
{
    ASSERT_EQ(add(0, QStringLiteral("now"), {item("A", 3600), item("B", 3600), item("C", 3600)}).status, 200);
    ASSERT_TRUE(waitForTitle(QStringLiteral("A")));
    ASSERT_EQ(command(QStringLiteral("remove-items"), {{QStringLiteral("plid"), 0}, {QStringLiteral("items"), QVariantList{0}}}).status, 200);
    EXPECT_TRUE(waitForTitle(QStringLiteral("B")));
    EXPECT_EQ(column(kQueue), QStringList({"B", "C"}));

    // The last track goes while it plays: playback ends, and what is added
    // "now" afterwards lands at the end and starts.
    ASSERT_EQ(control(QStringLiteral("next")).status, 200);
    ASSERT_TRUE(waitForTitle(QStringLiteral("C")));
    ASSERT_EQ(command(QStringLiteral("remove-items"), {{QStringLiteral("plid"), 0}, {QStringLiteral("items"), QVariantList{1}}}).status, 200);
    EXPECT_TRUE(waitFor([](const QVariantHash& s) { return state(s) == QStringLiteral("stopped"); }));
    const HttpReply added = add(0, QStringLiteral("now"), {item("N", 3600)});
    EXPECT_EQ(added.status, 200) << added.body.constData();
    EXPECT_EQ(column(kQueue), QStringList({"B", "N"}));
    EXPECT_TRUE(waitForTitle(QStringLiteral("N")));
}

TEST_F(PlaybackApi, fiveFailingTracksInARowAreSkippedTheSixthEndsPlayback)
{
    QVariantList items;
    for (int i = 0; i < 5; ++i)
        items.append(item(QStringLiteral("Bad%1").arg(i), 30, QStringLiteral("error:404")));
    items.append(item("Good", 30));
    for (int i = 5; i < 11; ++i)
        items.append(item(QStringLiteral("Bad%1").arg(i), 30, QStringLiteral("error:")));
    items.append(item("Never", 30));
    const QString id = api().subscribe({{QStringLiteral("value"), kStatus}});
    ASSERT_EQ(add(0, QStringLiteral("now"), items).status, 200);

    const QByteArray limit("Reached maximum error count exiting");
    const QList<QVariantHash> seen = statusesUntil(id, [&](const QList<QVariantHash>& statuses) {
        return m_host->log().contains(limit) && state(statuses.last()) == QStringLiteral("stopped");
    });
    EXPECT_EQ(played(seen), QStringList({"Good"}));
    EXPECT_EQ(m_host->log().count(limit), 1);
    EXPECT_EQ(state(status()), QStringLiteral("stopped"));
}

TEST_F(PlaybackApi, addingContentOfTwoModulesKeepsTheOrderOfTheirAnswers)
{
    const int source = create(QStringLiteral("Source"));
    ASSERT_EQ(add(source, QStringLiteral("append"), {item("S0", 3600), item("S1", 3600)}).status, 200);
    const QStringList ids = column(QStringLiteral("playlists:/tracks/%1").arg(source), QStringLiteral("id"));
    ASSERT_EQ(ids.size(), 2);
    const QVariantList paths{QStringLiteral("testmod:/a"), QStringLiteral("playlists:/item/") + ids[0],
                             QStringLiteral("testmod:/b"), QStringLiteral("playlists:/item/") + ids[1]};
    const HttpReply added = command(QStringLiteral("add-items"),
                                    {{QStringLiteral("plid"), 0}, {QStringLiteral("mode"), QStringLiteral("now")}, {QStringLiteral("items"), paths}});
    ASSERT_EQ(added.status, 200) << added.body.constData();
    EXPECT_EQ(column(kQueue), QStringList({"Track testmod:/a", "Track testmod:/b", "S0", "S1"}));
    EXPECT_TRUE(waitForTitle(QStringLiteral("Track testmod:/a")));
    // Preparing a content path the module knows nothing of gives no items.
    const HttpReply none = command(QStringLiteral("add-items"),
                                   {{QStringLiteral("plid"), 0}, {QStringLiteral("items"), QVariantList{QStringLiteral("playlists:/item/x")}}});
    EXPECT_EQ(none.status, 422);
    EXPECT_EQ(column(kQueue).size(), 4);
}

TEST_F(PlaybackApi, addingAWholePlaylistMovesItsItemsAndDeletesIt)
{
    const int source = create(QStringLiteral("Source"));
    const int target = create(QStringLiteral("Target"));
    const int empty = create(QStringLiteral("Empty"));
    ASSERT_EQ(add(source, QStringLiteral("append"), {item("S0", 60), item("S1", 60)}).status, 200);
    ASSERT_EQ(add(target, QStringLiteral("append"), {item("T0", 60)}).status, 200);
    const QString targetTracks = QStringLiteral("playlists:/tracks/%1").arg(target);

    const auto whole = [&](int from, int to) {
        return command(QStringLiteral("add-items"),
                       {{QStringLiteral("plid"), to}, {QStringLiteral("fromPlid"), from}, {QStringLiteral("items"), QVariantList()}});
    };
    ASSERT_EQ(whole(source, target).status, 200);
    EXPECT_EQ(column(targetTracks), QStringList({"T0", "S0", "S1"}));
    EXPECT_FALSE(column(QStringLiteral("playlists:/lists")).contains(QStringLiteral("Source")));

    const HttpReply nothing = whole(empty, target);
    EXPECT_EQ(nothing.status, 422);
    EXPECT_EQ(nothing.errorMessage(), QStringLiteral("Could not add items to playlist. Please select one or more items to add."));
    // Into itself: refused, and the list stays as it was.
    const HttpReply itself = whole(target, target);
    EXPECT_EQ(itself.status, 422);
    EXPECT_EQ(itself.errorMessage(), QStringLiteral("Could not add items to playlist. Cannot add a playlist to itself."));
    EXPECT_EQ(column(targetTracks), QStringList({"T0", "S0", "S1"}));
}

TEST_F(PlaybackApi, thePlayPositionSurvivesARestart)
{
    const int party = create(QStringLiteral("Party"));
    ASSERT_EQ(add(party, QStringLiteral("append"), {item("A", 3600), item("B", 3600), item("C", 3600)}).status, 200);
    ASSERT_EQ(command(QStringLiteral("play-playlist"), {{QStringLiteral("plid"), party}}).status, 200);
    ASSERT_TRUE(waitForTitle(QStringLiteral("A")));
    ASSERT_EQ(control(QStringLiteral("next")).status, 200);
    ASSERT_TRUE(waitForTitle(QStringLiteral("B")));

    QString error;
    ASSERT_TRUE(m_host->restart(&error)) << error.toStdString();
    // "now" goes in after the entry played last, and starts.
    ASSERT_EQ(add(party, QStringLiteral("now"), {item("New", 3600)}).status, 200);
    EXPECT_EQ(column(QStringLiteral("playlists:/tracks/%1").arg(party)), QStringList({"A", "B", "New", "C"}));
    EXPECT_TRUE(waitForTitle(QStringLiteral("New")));
}

TEST_F(PlaybackApiRealTime, theUsersControlsStepPauseAndStop)
{
    ASSERT_EQ(add(0, QStringLiteral("now"), {item("A", 3600), item("B", 3600), item("C", 3600)}).status, 200);
    ASSERT_TRUE(waitForTitle(QStringLiteral("A")));
    EXPECT_EQ(control(QStringLiteral("next")).status, 200);
    EXPECT_TRUE(waitForTitle(QStringLiteral("B")));
    // Within the first seconds of a track "previous" goes back.
    EXPECT_EQ(control(QStringLiteral("previous")).status, 200);
    EXPECT_TRUE(waitForTitle(QStringLiteral("A")));
    EXPECT_EQ(control(QStringLiteral("pause")).status, 200);
    EXPECT_EQ(state(status()), QStringLiteral("paused"));
    EXPECT_EQ(control(QStringLiteral("resume")).status, 200);
    EXPECT_EQ(state(status()), QStringLiteral("playing"));
    EXPECT_EQ(control(QStringLiteral("stop")).status, 200);
    EXPECT_TRUE(waitFor([](const QVariantHash& s) { return state(s) == QStringLiteral("stopped"); }));
}
