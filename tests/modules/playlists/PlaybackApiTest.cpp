#include "PlaylistsApi.h"


#include <functional>

namespace {

using J = PlaylistsApi;
const QString kQueue = "playlists:/queue";

QString state(const QVariantHash& status)
{
    return status.value("state").toString();
}

QString title(const QVariantHash& status)
{
    return status.value("track").toHash().value("title").toString();
}

// The titles that played, each run of one title counted once.
QStringList played(const QList<QVariantHash>& statuses)
{
    QStringList titles;
    for (const QVariantHash& s : statuses) {
        if (state(s) == "playing" && (titles.isEmpty() || titles.last() != title(s)))
            titles.append(title(s));
    }
    return titles;
}

// The player runs a thousand times faster than real time.
class PlaybackApi : public PlaylistsHostTest
{
protected:
    explicit PlaybackApi(const char* timeScale = "1000") : PlaylistsHostTest({"--time-scale", timeScale}) {}

    HttpReply add(int plid, const QString& mode, const QVariantList& items) const
    {
        return m_pl.command("add-external-items", QVariantHash{{"plid", plid}, {"mode", mode}, {"items", items}});
    }
    HttpReply control(const QString& name) const { return m_pl.set("player:/control", QVariantHash{{"control", name}}); }
    QVariantHash status() const { return m_pl.api().playerStatus(); }
    QString subscribeStatus() const { return m_pl.api().subscribe({{"value", "player:/status"}}); }
    // One role of every row of a list.
    QStringList column(const QString& path, const QString& role = "title") const
    {
        QStringList values;
        for (const QVariant& row : m_pl.rows(path, role).value("rows").toList())
            values.append(row.toList().value(0).toString());
        return values;
    }
    bool waitFor(const std::function<bool(const QVariantHash&)>& done) const { return m_pl.api().waitForPlayer(done); }
    bool waitForTitle(const QString& wanted) const
    {
        return waitFor([&](const QVariantHash& s) { return state(s) == "playing" && title(s) == wanted; });
    }
    bool waitForStop() const
    {
        return waitFor([](const QVariantHash& s) { return state(s) == "stopped"; });
    }
    QList<QVariantHash> statusesUntil(const QString& id, const std::function<bool(const QList<QVariantHash>&)>& done) const
    {
        return m_pl.api().valuesUntil(id, done);
    }
};

// The same at the speed of real time, for what depends on time played.
class PlaybackApiRealTime : public PlaybackApi
{
protected:
    PlaybackApiRealTime() : PlaybackApi("1") {}
};

} // namespace

TEST_F(PlaybackApi, aQueuePlaysThroughInOrderWithoutGapsAndEnds)
{
    const QString id = subscribeStatus();
    ASSERT_TRUE(J::answeredTrue(add(0, "now", {J::track("One", 20), J::track("Two", 20), J::track("Three", 20)})));
    const QList<QVariantHash> seen = statusesUntil(id, [](const QList<QVariantHash>& statuses) {
        return !played(statuses).isEmpty() && state(statuses.last()) == "stopped";
    });
    EXPECT_EQ(played(seen), QStringList({"One", "Two", "Three"}));
    // From the first start to the end the player never stood still.
    const auto first = std::find_if(seen.begin(), seen.end(), [](const QVariantHash& s) { return state(s) == "playing"; });
    EXPECT_EQ(std::count_if(first, seen.end(), [](const QVariantHash& s) { return state(s) != "playing"; }), 1);
}

TEST_F(PlaybackApi, addingContentOfTwoModulesKeepsTheOrderOfTheirAnswers)
{
    const int source = m_pl.createPlaylist("Source");
    ASSERT_EQ(add(source, "append", {J::track("S0", 3600), J::track("S1", 3600)}).status, 200);
    const QStringList ids = column(QString("playlists:/tracks/%1").arg(source), "id");
    ASSERT_EQ(ids.size(), 2);
    const QVariantList paths{"testmod:/a", "playlists:/item/" + ids[0], "testmod:/b", "playlists:/item/" + ids[1]};
    EXPECT_TRUE(J::answeredTrue(m_pl.command("add-items", QVariantHash{{"plid", 0}, {"mode", "now"}, {"items", paths}})));
    EXPECT_EQ(column(kQueue), QStringList({"Track testmod:/a", "Track testmod:/b", "S0", "S1"}));
    EXPECT_TRUE(waitForTitle("Track testmod:/a"));
    // Preparing a content path the module knows nothing of gives no items.
    EXPECT_EQ(m_pl.command("add-items", R"({"plid": 0, "items": ["playlists:/item/x"]})").status, 422);
    EXPECT_EQ(column(kQueue).size(), 4);
}

TEST_F(PlaybackApi, onlyTitledAudioTracksWithSomethingToPlayGoIn)
{
    const auto raw = [](const char* roles) { return QVariantHash{{"vexaRoles", QString::fromUtf8(roles)}}; };
    ASSERT_EQ(add(0, "append", {raw(R"({"title": "Pre", "type": "audio", "mediaData": {"metaData": {"prePlayPath": "testmod:/pre"}}})"),
                                raw(R"({"title": "Folder", "type": "container", "mediaData": {"resources": [{"uri": "test://f"}]}})"),
                                raw(R"({"type": "audio", "mediaData": {"resources": [{"uri": "test://untitled"}]}})"),
                                raw(R"({"title": "Silent", "type": "audio", "mediaData": {"resources": [{"uri": ""}]}})"), J::track("Ok")})
                  .status, 200);
    EXPECT_EQ(column(kQueue), QStringList({"Pre", "Ok"}));
}

TEST_F(PlaybackApi, addingAWholePlaylistMovesItsItemsAndDeletesItButCopiesTheQueue)
{
    const int source = m_pl.createPlaylist("Source");
    const int target = m_pl.createPlaylist("Target");
    ASSERT_EQ(add(source, "append", {J::track("S0"), J::track("S1")}).status, 200);
    ASSERT_EQ(add(target, "append", {J::track("T0")}).status, 200);
    ASSERT_EQ(add(0, "now", {J::track("A", 3600), J::track("B", 3600)}).status, 200);
    ASSERT_TRUE(waitForTitle("A"));
    const QString targetTracks = QString("playlists:/tracks/%1").arg(target);
    const auto whole = [&](int from, int to, const QString& mode) {
        return m_pl.command("add-items", QVariantHash{{"plid", to}, {"fromPlid", from}, {"mode", mode}, {"items", QVariantList()}});
    };

    // Behind the playing entry, and the emptied source goes.
    EXPECT_TRUE(J::answeredTrue(whole(source, 0, "next")));
    EXPECT_EQ(column(kQueue), QStringList({"A", "S0", "S1", "B"}));
    EXPECT_FALSE(column("playlists:/lists").contains("Source"));
    EXPECT_TRUE(J::answeredTrue(whole(0, target, "append")));
    EXPECT_EQ(column(targetTracks), QStringList({"T0", "A", "S0", "S1", "B"}));
    EXPECT_EQ(column(kQueue), QStringList({"A", "S0", "S1", "B"}));
    // Into itself: refused, and the list stays as it was.
    const HttpReply itself = whole(target, target, "append");
    EXPECT_EQ(itself.status, 422);
    EXPECT_EQ(itself.errorMessage(), "Could not add items to playlist. Cannot add a playlist to itself.");
    EXPECT_EQ(column(targetTracks), QStringList({"T0", "A", "S0", "S1", "B"}));
}

// Large lists move in blocks: merged, cleared and deleted, the store keeps
// dense numbers, no item without an entry and every reference intact.
TEST_F(PlaybackApi, mergingClearingAndDeletingLargeListsKeepTheStoreWhole)
{
    const StoreReader store(m_host.root() + "/data-rw/playlists/playlists.sqlite");
    const auto consistent = [&](int playlist, int size) {
        EXPECT_EQ(store.rows("SELECT count(*), coalesce(min(sequenceNumber), -1), coalesce(max(sequenceNumber), -1)"
                             " FROM playlists_items WHERE playlist = ?1", {playlist}),
                  QStringList(QString("%1|%2|%3").arg(size).arg(size ? 0 : -1).arg(size - 1)));
        EXPECT_EQ(store.scalar("SELECT count(*) FROM items WHERE uid NOT IN (SELECT item FROM playlists_items)"), 0);
        EXPECT_EQ(store.rows("PRAGMA foreign_key_check"), QStringList());
    };
    const int source = m_pl.createPlaylist("Source");
    ASSERT_TRUE(m_pl.addTracks(source, J::numbered("S", 300)));
    ASSERT_TRUE(m_pl.addTracks(0, J::numbered("Q", 300)));
    EXPECT_TRUE(J::answeredTrue(m_pl.command("add-items", QVariantHash{{"plid", 0}, {"fromPlid", source}})));
    QStringList joint;
    for (const QVariant& row : m_pl.rows(kQueue, "title", 298, 301).value("rows").toList())
        joint.append(row.toList().value(0).toString());
    EXPECT_EQ(joint, QStringList({"Q298", "Q299", "S0", "S1"}));
    consistent(0, 600);
    consistent(source, 0);
    const int copy = m_pl.createPlaylist("Copy");
    EXPECT_TRUE(J::answeredTrue(m_pl.command("add-items", QVariantHash{{"plid", copy}, {"fromPlid", 0}})));
    consistent(copy, 600);
    EXPECT_TRUE(J::answeredTrue(m_pl.command("delete-playlist", QVariantHash{{"plid", copy}})));

    const int doomed = m_pl.createPlaylist("Doomed");
    ASSERT_TRUE(m_pl.addTracks(doomed, J::numbered("D", 300)));
    ASSERT_TRUE(J::answeredTrue(m_pl.command("remove-items", QVariantHash{{"plid", doomed}, {"items", QVariantList{5, 7, 8, 200}}})));
    consistent(doomed, 296);
    EXPECT_TRUE(J::answeredTrue(m_pl.command("delete-playlist", QVariantHash{{"plid", doomed}})));
    consistent(doomed, 0);
    EXPECT_TRUE(J::answeredTrue(m_pl.command("clear-playlist", R"({"plid": 0})")));
    consistent(0, 0);
    EXPECT_EQ(store.scalar("SELECT count(*) FROM items"), 0);
}

// The player shows the play logic's number for the running track: an entry
// removed in front of it renumbers it.
TEST_F(PlaybackApi, thePlayerShowsTheRunningTracksNumberAfterTheListChanged)
{
    ASSERT_EQ(add(0, "now", {J::track("A", 3600), J::track("B", 3600), J::track("C", 3600)}).status, 200);
    ASSERT_TRUE(waitForTitle("A"));
    ASSERT_EQ(control("next").status, 200);
    ASSERT_TRUE(waitForTitle("B"));
    ASSERT_EQ(m_pl.command("remove-items", R"({"plid": 0, "items": [0]})").status, 200);
    EXPECT_TRUE(waitFor([](const QVariantHash& s) {
        return title(s) == "B" && s.value("track").toHash().value("value") == QVariant(ApiCalls::i32(0));
    }));
}

// Next and previous are PlayerControlsApi's, for both players.
TEST_F(PlaybackApiRealTime, theUsersControlsPauseResumeAndStop)
{
    ASSERT_EQ(add(0, "now", {J::track("A", 3600), J::track("B", 3600), J::track("C", 3600)}).status, 200);
    ASSERT_TRUE(waitForTitle("A"));
    EXPECT_EQ(control("pause").status, 200);
    EXPECT_EQ(state(status()), "paused");
    EXPECT_EQ(control("resume").status, 200);
    EXPECT_EQ(state(status()), "playing");
    EXPECT_EQ(control("stop").status, 200);
    EXPECT_TRUE(waitForStop());
}
