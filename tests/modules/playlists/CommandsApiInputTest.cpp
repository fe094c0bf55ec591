#include "PlaylistsApi.h"

#include <QRegularExpression>

namespace {

// The real host holding playlist 1 "Party" with three tracks.
class CommandsApiInput : public PlaylistsHostTest
{
protected:
    void SetUp() override
    {
        PlaylistsHostTest::SetUp();
        ASSERT_EQ(m_pl.createPlaylist("Party"), 1);
        ASSERT_TRUE(m_pl.addTracks(1, {"a", "b", "c"}));
    }

    // The titles of the root's playlist rows: between the create row and the collections header.
    QStringList playlistTitles() const
    {
        const QStringList titles = m_pl.titles("playlists:/root");
        const int first = titles.indexOf("Create New Playlist") + 1;
        return titles.mid(first, titles.indexOf("Collections") - first);
    }

    QStringList storedNames() const
    {
        QStringList names;
        for (const QString& row : m_pl.store().filter(QRegularExpression("^playlists\\|[1-9]")))
            names.append(row.section('|', 2, -4));
        return names;
    }
};

} // namespace

TEST_F(CommandsApiInput, BodiesTheApiCannotReadAre400AndOtherPathsGoOnToTheBrowseTree)
{
    const QStringList before = m_pl.state();
    for (const char* body : {"", "nonsense", R"([{"path": "playlists:/delete-playlist", "value": {"plid": 1}}])", R"({"value": {"plid": 1}})",
                             R"({"path": 1, "value": {"plid": 1}})", R"({"path": "delete-playlist", "value": {"plid": 1}})",
                             R"({"path": "playlists:/delete-playlist", "value": {"plid": 1})",
                             R"({"path": "playlists:/delete-playlist\u0000", "value": {"plid": 1}})"}) {
        const HttpReply reply = m_host.client().post("/api/v1/data", QByteArray(body));
        EXPECT_EQ(reply.status, 400) << body << " " << reply.body.constData();
        EXPECT_EQ(reply.errorName(), "badRequest") << body;
    }
    // A path of the module that is no command goes on to the browse tree,
    // where nothing answers these
    for (const char* path : {"playlists:/delete-playlists", "playlists:/delete-playlist/1", "playlists:/", "playlists:/root?action=deletePl"}) {
        const HttpReply reply = m_pl.set(path, PlaylistsApi::json(R"({"plid": 1})"));
        EXPECT_EQ(reply.status, 404) << path << " " << reply.body.constData();
        EXPECT_EQ(reply.errorName(), "invalidPath") << path;
    }
    EXPECT_EQ(m_pl.state(), before);
    // and the root's create row answers this one, through the command.
    EXPECT_TRUE(PlaylistsApi::answered(m_pl.set("playlists:/root?action=createPl", PlaylistsApi::stringValue("Via root")), ApiCalls::i32(2)));
    EXPECT_EQ(playlistTitles(), QStringList({"Party", "Via root"}));
}

// A value of the wrong shape reads as missing fields: an id that is not a
// whole number in range is -1, a name that is not text is no name, a list
// that is not a list of the right things is empty.
TEST_F(CommandsApiInput, ValuesOfTheWrongShapeAreRefusedByTheFirstCheck)
{
    const QStringList before = m_pl.state();
    const struct
    {
        const char* command;
        const char* value;
        const char* message;
    } cases[] = {
        {"create-playlist", R"("Party")", "Could not create playlist. Please provide a non-empty string as field. (name)"},
        {"create-playlist", "null", "Could not create playlist. Please provide a non-empty string as field. (name)"},
        {"create-playlist", R"({"name": 5})", "Could not create playlist. Please provide a non-empty string as field. (name)"},
        {"create-playlist", R"({"name": true})", "Could not create playlist. Please provide a non-empty string as field. (name)"},
        {"create-playlist", R"({"name": ["Party"]})", "Could not create playlist. Please provide a non-empty string as field. (name)"},
        {"create-collection", R"({"name": {"string_": "Box"}})", "Could not create collection. Please provide a non-empty string as field. (name)"},
        {"rename-playlist", R"({"plid": 1, "name": 7})", "Could not set playlist name. Please provide a non-empty string as field. (name)"},
        {"delete-playlist", "1", "Could not delete playlist. Cannot find playlist with invalid ID. (-1)"},
        {"delete-playlist", R"([1])", "Could not delete playlist. Cannot find playlist with invalid ID. (-1)"},
        {"delete-playlist", R"({"plid": "1x"})", "Could not delete playlist. Cannot find playlist with invalid ID. (-1)"},
        {"delete-playlist", R"({"plid": 1.5})", "Could not delete playlist. Cannot find playlist with invalid ID. (-1)"},
        {"delete-playlist", R"({"plid": true})", "Could not delete playlist. Cannot find playlist with invalid ID. (-1)"},
        {"delete-playlist", R"({"plid": [1]})", "Could not delete playlist. Cannot find playlist with invalid ID. (-1)"},
        {"delete-playlist", R"({"plid": 4294967297})", "Could not delete playlist. Cannot find playlist with invalid ID. (-1)"},
        {"delete-playlist", R"({"plid": -2147483648})", "Could not delete playlist. There is no playlist with this ID. (-2147483648)"},
        {"clear-playlist", R"({"plid": "one"})", "Could not clear playlist. Cannot find playlist with invalid ID. (-1)"},
        {"set-shuffle", R"({"plid": 1, "mode": 1.5})", "Could not set shuffle mode on playlist. Invalid shuffle mode. (shuffle-mode)"},
        {"set-shuffle", R"({"plid": 1, "mode": true})", "Could not set shuffle mode on playlist. Invalid shuffle mode. (shuffle-mode)"},
        {"set-repeat", R"({"plid": 1, "mode": -1})", "Could not set repeat mode on playlist. Invalid repeat mode. (repeat-mode)"},
        {"set-repeat", R"({"plid": 1, "mode": "ALL"})", "Could not set repeat mode on playlist. Invalid repeat mode. (repeat-mode)"},
        {"move-items", R"({"plid": 1, "items": 0, "to": 1})", "Could not move items in playlist. Please select one or more items to move."},
        {"move-items", R"({"plid": 1, "items": [0], "to": "end"})", "Could not move items in playlist. Cannot move items to negative position."},
        {"remove-items", R"({"plid": 1, "items": {"0": 1}})", "Could not remove items from playlist. Please select one or more items to remove."},
        {"remove-items", R"({"plid": 1, "items": [0, null]})", "Could not remove items from playlist. Please select one or more items to remove."},
        {"add-to-collection", R"({"clid": "1", "plid": {}})", "Could not add items to collection. Cannot find playlist with invalid ID. (-1)"},
        {"add-external-items", R"({"plid": 1, "items": "a"})", "Could not add external items to playlist. Please select one or more items to add."},
        {"add-external-items", R"({"plid": 1, "items": ["a"]})", "Could not add external items to playlist. Please select one or more items to add."},
        {"add-external-items", R"({"plid": 1, "items": [{"vexaRoles": "not json"}]})", "Could not add external items to playlist. No items were added. (No playitem found.)"},
    };
    for (const auto& c : cases) {
        const HttpReply reply = m_pl.command(c.command, c.value);
        EXPECT_EQ(reply.status, 422) << c.command << " " << c.value << " " << reply.body.constData();
        EXPECT_EQ(reply.errorMessage(), QString::fromUtf8(c.message)) << c.command << " " << c.value;
    }
    EXPECT_EQ(m_pl.state(), before);
}

// The module sets no length of its own on names: a 100 kB name is stored and
// listed whole (the API's bound on request bodies is the only one). A list of
// 100,000 positions in a playlist of three is refused whole.
TEST_F(CommandsApiInput, HugeNamesAreKeptWholeAndHugePositionListsAreRefusedWhole)
{
    ASSERT_EQ(m_pl.createPlaylist(QString(100 * 1024, 'n')), 2);
    const QString otherName = "L" + QString(100 * 1024 - 1, QChar(0x00e9));
    EXPECT_TRUE(PlaylistsApi::answeredTrue(m_pl.command("rename-playlist", QVariantHash{{"plid", 2}, {"name", otherName}})));
    // Compared without printing: a failure would print the names whole.
    QStringList listed = playlistTitles();
    listed.sort();
    EXPECT_TRUE(listed == QStringList({otherName, "Party"}));
    EXPECT_TRUE(storedNames() == QStringList({"Party", otherName}));

    const QStringList before = m_pl.state();
    QVariantList positions;
    for (int i = 0; i < 100000; ++i)
        positions.append(i);
    EXPECT_EQ(m_pl.command("remove-items", QVariantHash{{"plid", 1}, {"items", positions}}).errorMessage(),
              "Could not remove items from playlist. Remove items failed");
    EXPECT_EQ(m_pl.command("move-items", QVariantHash{{"plid", 1}, {"items", positions}, {"to", 0}}).errorMessage(),
              "Could not move items in playlist. Cannot move items, sequence number is not in valid range.");
    EXPECT_EQ(m_pl.state(), before);
}

TEST_F(CommandsApiInput, NamesAreStoredAndListedExactlyAsSent)
{
    const QStringList names{"Rock 'n' Roll \"Live\"", "x'); DROP TABLE playlists; --", "SELECT * FROM items WHERE 1=1",
                            QStringLiteral("\U0001F600\U0001F3B6 Party"), QStringLiteral("\u05DE\u05D5\u05D6\u05D9\u05E7\u05D4 \u05E9\u05E7\u05D8\u05D4"),
                            QStringLiteral("\u0645\u0648\u0633\u064A\u0642\u0649 (\u0661)"), "  padded  ", "tab\tline\nbreak", "%1 (%2) 100%",
                            "back\\slash <b>&amp;</b>", "nul" + QString(QChar(0)) + "inside"};
    for (const QString& name : names)
        EXPECT_GT(m_pl.createPlaylist(name), 1) << name.toStdString();
    EXPECT_EQ(m_pl.createCollection(names.at(1)), 1);
    EXPECT_EQ(m_pl.createCollection(names.at(3)), 2);

    QStringList expected = names + QStringList{"Party"};
    expected.sort();
    // As listed and stored, and as read back from the store after a restart.
    for (int round = 0; round < 2; ++round) {
        QStringList listed = playlistTitles();
        QStringList stored = storedNames();
        listed.sort();
        stored.sort();
        EXPECT_EQ(listed, expected) << "round " << round;
        EXPECT_EQ(stored, expected) << "round " << round;
        const QStringList rootTitles = m_pl.titles("playlists:/root");
        const QStringList collections = rootTitles.mid(rootTitles.indexOf("Collections"));
        EXPECT_TRUE(collections.contains(names.at(1)) && collections.contains(names.at(3))) << "round " << round;
        if (round == 0)
            start();
    }

    // Renaming to a name that looks like SQL leaves the others alone, and a
    // name with markers of its own stays as it is inside a message.
    EXPECT_TRUE(PlaylistsApi::answeredTrue(m_pl.command("rename-playlist", QVariantHash{{"plid", 1}, {"name", "'; DELETE FROM playlists; --"}})));
    EXPECT_EQ(storedNames().size(), names.size() + 1);
    EXPECT_EQ(m_pl.command("play-playlist", QVariantHash{{"plid", 10}}).errorMessage(),
              "Could not start playback on playlist. There are no items in the playlist. (%1 (%2) 100%)");
}
