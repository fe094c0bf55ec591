#include "BrowseTreeClient.h"
#include "EventStreamReader.h"
#include "HostProcess.h"

#include <gtest/gtest.h>

namespace {

using J = BrowseTreeClient;

class BrowseApiEvents : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QString error;
        ASSERT_TRUE(m_host.start(&error)) << error.toStdString();
    }

    // The events of a subscription as sorted texts "<change> <path>[ <rows>]":
    // one change may notify several lists in any order.
    QStringList heard(const QString& id) const
    {
        QStringList texts;
        for (const QVariant& event : tree().events(id)) {
            const QVariantHash e = event.toHash();
            QString text = e.value(QStringLiteral("change")).toString() + QLatin1Char(' ') + e.value(QStringLiteral("path")).toString();
            if (e.contains(QStringLiteral("rows")))
                text += QLatin1Char(' ') + QString::fromStdString(J::text(e.value(QStringLiteral("rows"))));
            texts.append(text);
        }
        texts.sort();
        return texts;
    }

    BrowseTreeClient tree() const { return BrowseTreeClient(m_host); }

    HostProcess m_host{{HostProcess::playlistsModule(), QStringLiteral("libvexa_testmod.so")},
                       {QStringLiteral("--time-scale"), QStringLiteral("1000")}};
};

TEST_F(BrowseApiEvents, EachChangeNotifiesExactlyTheListsAndMenusItTouches)
{
    const int road = tree().createPlaylist(QStringLiteral("Road"));
    ASSERT_EQ(road, 1);
    ASSERT_TRUE(tree().addTracks(road, J::numbered(QStringLiteral("R"), 7)));
    const QString trackMenu = QStringLiteral("playlists:/menu/track?action=cmnode&plid=1&itemid=1&seqnum=0");
    const QString id = tree().subscribe({QStringLiteral("playlists:/root"), QStringLiteral("playlists:/lists"),
                                         QStringLiteral("playlists:/menu/add-to-playlist"), QStringLiteral("playlists:/tracks/1"),
                                         QStringLiteral("playlists:/tracks/2"), QStringLiteral("playlists:/menu/playlist?plid=1"),
                                         QStringLiteral("playlists:/queue"), QStringLiteral("playlists:/menu/queue?plid=0"),
                                         trackMenu, QStringLiteral("playlists:/collection?clid=1"),
                                         QStringLiteral("playlists:/menu/add-to-collection?plid=1")});
    ASSERT_FALSE(id.isEmpty());
    const auto command = [this](const char* path, const char* value) {
        const HttpReply reply = tree().setData(QLatin1String(path), J::json(value));
        EXPECT_EQ(reply.status, 200) << path << ": " << reply.body.constData();
    };
    const auto expectHeard = [&](const QStringList& expected, const char* what) {
        EXPECT_EQ(J::text(heard(id)), J::text(expected)) << what;
    };

    ASSERT_TRUE(tree().addTracks(road, {QStringLiteral("R7"), QStringLiteral("R8"), QStringLiteral("R9")}));
    expectHeard({QStringLiteral("insert playlists:/tracks/1 [7,8,9]")}, "added tracks, row by row");
    ASSERT_TRUE(tree().addTracks(0, {QStringLiteral("Q0"), QStringLiteral("Q1")}));
    expectHeard({QStringLiteral("insert playlists:/queue [0,1]")}, "added to the queue");

    ASSERT_EQ(tree().createPlaylist(QStringLiteral("City")), 2);
    expectHeard({QStringLiteral("reset playlists:/lists"), QStringLiteral("reset playlists:/menu/add-to-playlist"),
                 QStringLiteral("reset playlists:/root")},
                "created a playlist");
    command("playlists:/rename-playlist", R"({"plid": 1, "name": "Highway"})");
    expectHeard({QStringLiteral("reset playlists:/menu/playlist?plid=1"), QStringLiteral("reset playlists:/root")},
                "renamed: the list of playlists is left as it is");
    command("playlists:/set-shuffle", R"({"plid": 1, "mode": 1})");
    expectHeard({QStringLiteral("reset playlists:/menu/playlist?plid=1")}, "shuffle of a playlist");
    command("playlists:/set-repeat", R"({"plid": 1, "mode": 2})");
    expectHeard({QStringLiteral("reset playlists:/menu/playlist?plid=1")}, "repeat of a playlist");
    command("playlists:/set-shuffle", R"({"plid": 0, "mode": 1})");
    expectHeard({QStringLiteral("reset playlists:/menu/queue?plid=0")}, "shuffle of the queue");

    command("playlists:/move-items", R"({"plid": 1, "items": [0], "to": 4})");
    expectHeard({QStringLiteral("reset ") + trackMenu, QStringLiteral("reset playlists:/tracks/1")}, "moved a track");
    command("playlists:/remove-items", R"({"plid": 1, "items": [2, 3]})");
    expectHeard({QStringLiteral("reset playlists:/tracks/1")}, "removed tracks");
    command("playlists:/clear-playlist", R"({"plid": 0})");
    expectHeard({QStringLiteral("reset playlists:/queue")}, "cleared the queue");

    ASSERT_EQ(tree().createCollection(QStringLiteral("Trips")), 1);
    expectHeard({QStringLiteral("reset playlists:/menu/add-to-collection?plid=1"), QStringLiteral("reset playlists:/root")},
                "created a collection");
    command("playlists:/add-to-collection", R"({"clid": 1, "plid": 2})");
    expectHeard({QStringLiteral("reset playlists:/collection?clid=1")}, "a collection gained a playlist");
    command("playlists:/remove-from-collection", R"({"clid": 1, "plid": 2})");
    expectHeard({QStringLiteral("reset playlists:/collection?clid=1")}, "a collection lost a playlist");
    command("playlists:/delete-collection", R"({"clid": 1})");
    expectHeard({QStringLiteral("reset playlists:/menu/add-to-collection?plid=1"), QStringLiteral("reset playlists:/root")},
                "deleted a collection");

    command("playlists:/delete-playlist", R"({"plid": 2})");
    expectHeard({QStringLiteral("reset playlists:/menu/add-to-playlist"), QStringLiteral("reset playlists:/root")},
                "deleted a playlist: the list of playlists is left as it is");
    // The deleted playlist's tracks node is still there, and empty.
    const HttpReply gone = tree().api().rows(QStringLiteral("playlists:/tracks/2"));
    ASSERT_EQ(gone.status, 200) << gone.body.constData();
    EXPECT_EQ(J::text(gone.json()), J::text(R"({"title": "Playlist - ", "rowsCount": 0, "rows": [],
        "roles": {"title": "Playlist - ", "type": "container", "path": "playlists:/tracks/2", "containerType": "none",
                  "mediaData": {"metaData": {"playLogicPath": "playlists:/playlogic"}}}})"));
    // A new playlist gets tracks that notify as any other.
    const int next = tree().createPlaylist(QStringLiteral("Next"));
    heard(id);
    ASSERT_TRUE(tree().addTracks(next, {QStringLiteral("N0")}));
    EXPECT_EQ(J::text(heard(id)), J::text(QStringList{QStringLiteral("insert playlists:/tracks/%1 [0]").arg(next)}));
}

TEST_F(BrowseApiEvents, AStreamingSubscriberOfTheQueueHearsInsertsAndResets)
{
    const QString id = tree().subscribe({QStringLiteral("playlists:/queue")});
    ASSERT_FALSE(id.isEmpty());
    EventStreamReader stream;
    ASSERT_TRUE(stream.open(m_host.port(), tree().api().streamTarget(id)));
    ASSERT_EQ(stream.status(), 200);

    const auto next = [&stream]() {
        QByteArray data;
        return stream.readData(&data, 5000) ? J::text(J::json(data.constData())) : std::string("nothing came");
    };
    ASSERT_TRUE(tree().addTracks(0, J::numbered(QStringLiteral("Q"), 3)));
    EXPECT_EQ(next(), J::text(R"({"path": "playlists:/queue", "kind": "rows", "change": "insert", "rows": [0, 1, 2]})"));
    ASSERT_TRUE(tree().addTracks(0, {QStringLiteral("Q3")}));
    EXPECT_EQ(next(), J::text(R"({"path": "playlists:/queue", "kind": "rows", "change": "insert", "rows": [3]})"));
    ASSERT_EQ(tree().setData(QStringLiteral("playlists:/remove-items"), J::json(R"({"plid": 0, "items": [1]})")).status, 200);
    EXPECT_EQ(next(), J::text(R"({"path": "playlists:/queue", "kind": "rows", "change": "reset"})"));
    ASSERT_EQ(tree().setData(QStringLiteral("playlists:/clear-playlist"), J::json(R"({"plid": 0})")).status, 200);
    EXPECT_EQ(next(), J::text(R"({"path": "playlists:/queue", "kind": "rows", "change": "reset"})"));
}

} // namespace
