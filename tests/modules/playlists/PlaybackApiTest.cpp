#include "ApiCalls.h"
#include "HostProcess.h"

#include <QElapsedTimer>
#include <QThread>

#include <gtest/gtest.h>

#include <functional>

namespace {

const QString kStatus = "player:/status";
const QString kQueue = "playlists:/queue";

// An item as clients add it: only the JSON text of its roles.
QVariantHash item(const QString& title, int seconds, const QString& uri = QString())
{
    const QVariantHash resource{{"uri", uri.isEmpty() ? "test://" + title : uri}, {"duration", seconds}};
    const QVariantHash roles{
        {"title", title}, {"type", "audio"}, {"mediaData", QVariantHash{{"resources", QVariantList{resource}}}}};
    return {{"vexaRoles", QString::fromUtf8(HttpClient::json(roles))}};
}

QString state(const QVariantHash& status)
{
    return status.value("state").toString();
}

QString title(const QVariantHash& status)
{
    return status.value("track").toHash().value("title").toString();
}

// The playlists module and the test module in the real host, its player fast.
class PlaybackApi : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_host = std::make_unique<HostProcess>(QStringList{HostProcess::playlistsModule(), "libvexa_testmod.so"},
                                               QStringList{"--time-scale", timeScale()});
        QString error;
        ASSERT_TRUE(m_host->start(&error)) << error.toStdString();
    }

    virtual QString timeScale() const { return "1000"; }
    ApiCalls api() const { return ApiCalls(m_host->client()); }

    HttpReply command(const QString& name, const QVariantHash& value) const
    {
        return api().setData("playlists:/" + name, value);
    }
    HttpReply add(int plid, const QString& mode, const QVariantList& items) const
    {
        return command("add-external-items", {{"plid", QString::number(plid)}, {"mode", mode}, {"items", items}});
    }
    int create(const QString& name) const
    {
        const QVariantHash reply = command("create-playlist", {{"name", name}}).json().toHash();
        return reply.value("result").toHash().value("value").toHash().value("i32_").toInt();
    }
    HttpReply control(const QString& name) const
    {
        return api().setData("player:/control", QVariantHash{{"control", name}});
    }
    QVariantHash status() const { return api().data(kStatus, "value").json().toHash().value("value").toHash(); }
    // One role of every row of a list.
    QStringList column(const QString& path, const QString& role = "title") const
    {
        QStringList values;
        for (const QVariant& row : api().rows(path, role).json().toHash().value("rows").toList())
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
        return waitFor([&](const QVariantHash& s) { return state(s) == "playing" && title(s) == wanted; });
    }
    // The status values subscription id reports until done holds for them or ten seconds passed.
    QList<QVariantHash> statusesUntil(const QString& id,
                                      const std::function<bool(const QList<QVariantHash>&)>& done) const
    {
        QList<QVariantHash> seen;
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 10000) {
            for (const QVariant& event : api().poll(id, 1).json().toList()) {
                seen.append(event.toHash().value("value").toHash());
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
            if (state(s) == "playing" && (titles.isEmpty() || titles.last() != title(s)))
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
    QString timeScale() const override { return "1"; }
};

} // namespace

TEST_F(PlaybackApi, aQueuePlaysThroughInOrderWithoutGapsAndEnds)
{
    const QString id = api().subscribe({{"value", kStatus}});
    const HttpReply added = add(0, "now", {item("One", 20), item("Two", 20), item("Three", 20)});
    ASSERT_EQ(added.status, 200) << added.body.constData();
    EXPECT_EQ(added.json().toHash().value("xclass"), "VexaActionReply");

    const QList<QVariantHash> seen = statusesUntil(id, [](const QList<QVariantHash>& statuses) {
        return !played(statuses).isEmpty() && state(statuses.last()) == "stopped";
    });
    EXPECT_EQ(played(seen), QStringList({"One", "Two", "Three"}));
    // From the first start to the end the player never stood still.
    const auto first =
        std::find_if(seen.begin(), seen.end(), [](const QVariantHash& s) { return state(s) == "playing"; });
    EXPECT_EQ(std::count_if(first, seen.end(), [](const QVariantHash& s) { return state(s) != "playing"; }), 1);
}

TEST_F(PlaybackApi, repeatAllWrapsAndRepeatOneRepeats)
{
    ASSERT_EQ(command("set-repeat", {{"plid", 0}, {"mode", "all"}}).status, 200);
    const QString id = api().subscribe({{"value", kStatus}});
    ASSERT_EQ(add(0, "now", {item("A", 30), item("B", 30)}).status, 200);
    const QList<QVariantHash> seen =
        statusesUntil(id, [](const QList<QVariantHash>& statuses) { return played(statuses).size() >= 5; });
    EXPECT_EQ(played(seen), QStringList({"A", "B", "A", "B", "A"}));
    EXPECT_EQ(api().data("player:/playMode", "value").json().toHash().value("value").toHash().value("playerPlayMode"),
              "repeatAll");

    const QVariantHash repeatOne{{"type", "playerPlayMode"}, {"playerPlayMode", "repeatOne"}};
    ASSERT_EQ(api().setData("player:/playMode", repeatOne).status, 200);
    // What was announced before the change may still start; after that one title plays on.
    QThread::msleep(100);
    const QString kept = title(status());
    ASSERT_FALSE(kept.isEmpty());
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < 300) {
        const QVariantHash now = status();
        ASSERT_EQ(state(now), "playing");
        ASSERT_EQ(title(now), kept);
    }
    EXPECT_EQ(control("stop").status, 200);
}

TEST_F(PlaybackApi, removingThePlayingTrackGoesOnWithTheNext)
{
    ASSERT_EQ(add(0, "now", {item("A", 3600), item("B", 3600), item("C", 3600)}).status, 200);
    ASSERT_TRUE(waitForTitle("A"));
    ASSERT_EQ(command("remove-items", {{"plid", 0}, {"items", QVariantList{0}}}).status, 200);
    EXPECT_TRUE(waitForTitle("B"));
    EXPECT_EQ(column(kQueue), QStringList({"B", "C"}));

    // The last track goes while it plays: playback ends, and what is added
    // "now" afterwards lands at the end and starts.
    ASSERT_EQ(control("next").status, 200);
    ASSERT_TRUE(waitForTitle("C"));
    ASSERT_EQ(command("remove-items", {{"plid", 0}, {"items", QVariantList{1}}}).status, 200);
    EXPECT_TRUE(waitFor([](const QVariantHash& s) { return state(s) == "stopped"; }));
    const HttpReply added = add(0, "now", {item("N", 3600)});
    EXPECT_EQ(added.status, 200) << added.body.constData();
    EXPECT_EQ(column(kQueue), QStringList({"B", "N"}));
    EXPECT_TRUE(waitForTitle("N"));
}

TEST_F(PlaybackApi, fiveFailingTracksInARowAreSkippedTheSixthEndsPlayback)
{
    QVariantList items;
    for (int i = 0; i < 5; ++i)
        items.append(item(QString("Bad%1").arg(i), 30, "error:404"));
    items.append(item("Good", 30));
    for (int i = 5; i < 11; ++i)
        items.append(item(QString("Bad%1").arg(i), 30, "error:"));
    items.append(item("Never", 30));
    const QString id = api().subscribe({{"value", kStatus}});
    ASSERT_EQ(add(0, "now", items).status, 200);

    const QByteArray limit("Reached maximum error count exiting");
    const QList<QVariantHash> seen = statusesUntil(id, [&](const QList<QVariantHash>& statuses) {
        return m_host->log().contains(limit) && state(statuses.last()) == "stopped";
    });
    EXPECT_EQ(played(seen), QStringList({"Good"}));
    EXPECT_EQ(m_host->log().count(limit), 1);
    EXPECT_EQ(state(status()), "stopped");
}

TEST_F(PlaybackApi, addingContentOfTwoModulesKeepsTheOrderOfTheirAnswers)
{
    const int source = create("Source");
    ASSERT_EQ(add(source, "append", {item("S0", 3600), item("S1", 3600)}).status, 200);
    const QStringList ids = column(QString("playlists:/tracks/%1").arg(source), "id");
    ASSERT_EQ(ids.size(), 2);
    const QVariantList paths{"testmod:/a", "playlists:/item/" + ids[0], "testmod:/b", "playlists:/item/" + ids[1]};
    const HttpReply added = command("add-items", {{"plid", 0}, {"mode", "now"}, {"items", paths}});
    ASSERT_EQ(added.status, 200) << added.body.constData();
    EXPECT_EQ(column(kQueue), QStringList({"Track testmod:/a", "Track testmod:/b", "S0", "S1"}));
    EXPECT_TRUE(waitForTitle("Track testmod:/a"));
    // Preparing a content path the module knows nothing of gives no items.
    const HttpReply none = command("add-items", {{"plid", 0}, {"items", QVariantList{"playlists:/item/x"}}});
    EXPECT_EQ(none.status, 422);
    EXPECT_EQ(column(kQueue).size(), 4);
}

TEST_F(PlaybackApi, onlyTitledAudioTracksWithSomethingToPlayGoIn)
{
    const auto raw = [](const char* roles) { return QVariantHash{{"vexaRoles", QString::fromUtf8(roles)}}; };
    const QVariantList items{
        raw(R"({"title": "Pre", "type": "audio", "mediaData": {"metaData": {"prePlayPath": "testmod:/pre"}}})"),
        raw(R"({"title": "Folder", "type": "container", "mediaData": {"resources": [{"uri": "test://f"}]}})"),
        raw(R"({"type": "audio", "mediaData": {"resources": [{"uri": "test://untitled"}]}})"),
        raw(R"({"title": "Silent", "type": "audio", "mediaData": {"resources": [{"uri": ""}]}})"),
        item("Ok", 60)};
    ASSERT_EQ(add(0, "append", items).status, 200);
    EXPECT_EQ(column(kQueue), QStringList({"Pre", "Ok"}));
}

TEST_F(PlaybackApi, addingAWholePlaylistMovesItsItemsAndDeletesIt)
{
    const int source = create("Source");
    const int target = create("Target");
    const int empty = create("Empty");
    ASSERT_EQ(add(source, "append", {item("S0", 60), item("S1", 60)}).status, 200);
    ASSERT_EQ(add(target, "append", {item("T0", 60)}).status, 200);
    const QString targetTracks = QString("playlists:/tracks/%1").arg(target);

    const auto whole = [&](int from, int to) {
        return command("add-items", {{"plid", to}, {"fromPlid", from}, {"items", QVariantList()}});
    };
    ASSERT_EQ(whole(source, target).status, 200);
    EXPECT_EQ(column(targetTracks), QStringList({"T0", "S0", "S1"}));
    EXPECT_FALSE(column("playlists:/lists").contains("Source"));

    const HttpReply nothing = whole(empty, target);
    EXPECT_EQ(nothing.status, 422);
    EXPECT_EQ(nothing.errorMessage(), "Could not add items to playlist. Please select one or more items to add.");
    // Into itself: refused, and the list stays as it was.
    const HttpReply itself = whole(target, target);
    EXPECT_EQ(itself.status, 422);
    EXPECT_EQ(itself.errorMessage(), "Could not add items to playlist. Cannot add a playlist to itself.");
    EXPECT_EQ(column(targetTracks), QStringList({"T0", "S0", "S1"}));
}

TEST_F(PlaybackApi, thePlayPositionSurvivesARestart)
{
    const int party = create("Party");
    ASSERT_EQ(add(party, "append", {item("A", 3600), item("B", 3600), item("C", 3600)}).status, 200);
    ASSERT_EQ(command("play-playlist", {{"plid", party}}).status, 200);
    ASSERT_TRUE(waitForTitle("A"));
    ASSERT_EQ(control("next").status, 200);
    ASSERT_TRUE(waitForTitle("B"));

    QString error;
    ASSERT_TRUE(m_host->restart(&error)) << error.toStdString();
    // "now" goes in after the entry played last, and starts.
    ASSERT_EQ(add(party, "now", {item("New", 3600)}).status, 200);
    EXPECT_EQ(column(QString("playlists:/tracks/%1").arg(party)), QStringList({"A", "B", "New", "C"}));
    EXPECT_TRUE(waitForTitle("New"));
}

TEST_F(PlaybackApiRealTime, theUsersControlsStepPauseAndStop)
{
    ASSERT_EQ(add(0, "now", {item("A", 3600), item("B", 3600), item("C", 3600)}).status, 200);
    ASSERT_TRUE(waitForTitle("A"));
    EXPECT_EQ(control("next").status, 200);
    EXPECT_TRUE(waitForTitle("B"));
    // Within the first seconds of a track "previous" goes back.
    EXPECT_EQ(control("previous").status, 200);
    EXPECT_TRUE(waitForTitle("A"));
    EXPECT_EQ(control("pause").status, 200);
    EXPECT_EQ(state(status()), "paused");
    EXPECT_EQ(control("resume").status, 200);
    EXPECT_EQ(state(status()), "playing");
    EXPECT_EQ(control("stop").status, 200);
    EXPECT_TRUE(waitFor([](const QVariantHash& s) { return state(s) == "stopped"; }));
}
