#include "EventStreamReader.h"
#include "PlaylistsApi.h"

namespace {

using J = PlaylistsApi;
using BrowseApiEvents = PlaylistsHostTest;

TEST_F(BrowseApiEvents, EachChangeNotifiesExactlyTheListsAndMenusItTouches)
{
    ASSERT_EQ(m_pl.createPlaylist("Road"), 1);
    ASSERT_TRUE(m_pl.addTracks(1, J::numbered("R", 7)));
    const QString trackMenu = "playlists:/menu/track?action=cmnode&plid=1&itemid=1&seqnum=0";
    const QString id = m_pl.subscribe({"playlists:/root", "playlists:/lists", "playlists:/menu/add-to-playlist", "playlists:/tracks/1",
                                       "playlists:/tracks/2", "playlists:/menu/playlist?plid=1", "playlists:/queue",
                                       "playlists:/menu/queue?plid=0", trackMenu, "playlists:/collection?clid=1",
                                       "playlists:/menu/add-to-collection?plid=1"});
    ASSERT_FALSE(id.isEmpty());
    // The events so far as sorted texts "<change> <path>[ <rows>]": one
    // change may notify several lists in any order.
    const auto heard = [&]() {
        QStringList texts;
        for (const QVariant& event : m_pl.events(id)) {
            const QVariantHash e = event.toHash();
            texts.append(e.value("change").toString() + ' ' + e.value("path").toString()
                         + (e.contains("rows") ? ' ' + QString::fromStdString(J::text(e.value("rows"))) : QString()));
        }
        texts.sort();
        return texts;
    };
    const auto command = [&](const char* name, const char* value, const QStringList& expected) {
        EXPECT_TRUE(J::answeredTrue(m_pl.command(name, value))) << name;
        EXPECT_EQ(heard(), expected) << name << " " << value;
    };

    ASSERT_TRUE(m_pl.addTracks(1, {"R7", "R8", "R9"}));
    EXPECT_EQ(heard(), QStringList({"insert playlists:/tracks/1 [7,8,9]"})) << "added tracks, row by row";
    ASSERT_TRUE(m_pl.addTracks(0, {"Q0", "Q1"}));
    EXPECT_EQ(heard(), QStringList({"insert playlists:/queue [0,1]"})) << "added to the queue";
    ASSERT_EQ(m_pl.createPlaylist("City"), 2);
    EXPECT_EQ(heard(), QStringList({"reset playlists:/lists", "reset playlists:/menu/add-to-playlist", "reset playlists:/root"}));
    // Renamed: the list of playlists is left as it is.
    command("rename-playlist", R"({"plid": 1, "name": "Highway"})", {"reset playlists:/menu/playlist?plid=1", "reset playlists:/root"});
    command("set-shuffle", R"({"plid": 1, "mode": 1})", {"reset playlists:/menu/playlist?plid=1"});
    command("set-repeat", R"({"plid": 1, "mode": 2})", {"reset playlists:/menu/playlist?plid=1"});
    command("set-shuffle", R"({"plid": 0, "mode": 1})", {"reset playlists:/menu/queue?plid=0"});
    command("move-items", R"({"plid": 1, "items": [0], "to": 4})", {"reset " + trackMenu, "reset playlists:/tracks/1"});
    command("remove-items", R"({"plid": 1, "items": [2, 3]})", {"reset playlists:/tracks/1"});
    command("clear-playlist", R"({"plid": 0})", {"reset playlists:/queue"});
    ASSERT_EQ(m_pl.createCollection("Trips"), 1);
    EXPECT_EQ(heard(), QStringList({"reset playlists:/menu/add-to-collection?plid=1", "reset playlists:/root"})) << "created a collection";
    command("add-to-collection", R"({"clid": 1, "plid": 2})", {"reset playlists:/collection?clid=1"});
    command("remove-from-collection", R"({"clid": 1, "plid": 2})", {"reset playlists:/collection?clid=1"});
    command("delete-collection", R"({"clid": 1})", {"reset playlists:/menu/add-to-collection?plid=1", "reset playlists:/root"});
    // Deleted: the list of playlists is left as it is.
    command("delete-playlist", R"({"plid": 2})", {"reset playlists:/menu/add-to-playlist", "reset playlists:/root"});

    // The deleted playlist's tracks node is still there, and empty.
    const HttpReply gone = m_pl.api().rows("playlists:/tracks/2");
    ASSERT_EQ(gone.status, 200) << gone.body.constData();
    EXPECT_EQ(J::text(gone.json()), J::text(R"({"title": "Playlist - ", "rowsCount": 0, "rows": [],
        "roles": {"title": "Playlist - ", "type": "container", "path": "playlists:/tracks/2", "containerType": "none",
                  "mediaData": {"metaData": {"playLogicPath": "playlists:/playlogic"}}}})"));
    // A new playlist gets tracks that notify as any other.
    const int next = m_pl.createPlaylist("Next");
    heard();
    ASSERT_TRUE(m_pl.addTracks(next, {"N0"}));
    EXPECT_EQ(heard(), QStringList{QString("insert playlists:/tracks/%1 [0]").arg(next)});
}

TEST_F(BrowseApiEvents, AStreamingSubscriberOfTheQueueHearsInsertsAndResets)
{
    const QString id = m_pl.subscribe({"playlists:/queue"});
    ASSERT_FALSE(id.isEmpty());
    EventStreamReader stream;
    ASSERT_TRUE(stream.open(m_host.port(), m_pl.api().streamTarget(id)));
    ASSERT_EQ(stream.status(), 200);
    const auto next = [&stream]() {
        QByteArray data;
        return stream.readData(&data, 5000) ? J::text(J::json(data.constData())) : std::string("nothing came");
    };

    ASSERT_TRUE(m_pl.addTracks(0, J::numbered("Q", 3)));
    EXPECT_EQ(next(), J::text(R"({"path": "playlists:/queue", "kind": "rows", "change": "insert", "rows": [0, 1, 2]})"));
    ASSERT_TRUE(m_pl.addTracks(0, {"Q3"}));
    EXPECT_EQ(next(), J::text(R"({"path": "playlists:/queue", "kind": "rows", "change": "insert", "rows": [3]})"));
    ASSERT_TRUE(J::answeredTrue(m_pl.command("remove-items", R"({"plid": 0, "items": [1]})")));
    EXPECT_EQ(next(), J::text(R"({"path": "playlists:/queue", "kind": "rows", "change": "reset"})"));
    ASSERT_TRUE(J::answeredTrue(m_pl.command("clear-playlist", R"({"plid": 0})")));
    EXPECT_EQ(next(), J::text(R"({"path": "playlists:/queue", "kind": "rows", "change": "reset"})"));
}

} // namespace
