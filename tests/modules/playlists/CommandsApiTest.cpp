#include "PlaylistsApi.h"

#include <QRegularExpression>

namespace {

// Logging at INFO, so that the module's INFO and ERROR lines can be checked.
class CommandsApiReplies : public PlaylistsHostTest
{
protected:
    CommandsApiReplies() : PlaylistsHostTest({"--time-scale", "1000", "--log-level", "INFO"}) {}

    ::testing::AssertionResult ok(const char* command, const char* value) const
    {
        return PlaylistsApi::answeredTrue(m_pl.command(command, value));
    }
    // The store rows of one table, such as "playlists|1|Party|0|0|-1".
    QStringList storeRows(const QString& table) const { return m_pl.store().filter(QRegularExpression("^" + table + "\\|")); }
};

} // namespace

TEST_F(CommandsApiReplies, EveryCommandAnswersTrueOrTheNewUidAndDoesWhatItSays)
{
    const QStringList baseline = m_pl.titlesAndPaths("playlists:/root");
    ASSERT_EQ(baseline, QStringList({"PlayQueue|playlists:/queue", "Playlists|", "Create New Playlist|playlists:/root?action=createPl",
                                     "Collections|", "Create New Collection|playlists:/root?action=createCl"}));

    EXPECT_TRUE(PlaylistsApi::answered(m_pl.command("create-playlist", R"({"name": "Party"})"), ApiCalls::i32(1)));
    EXPECT_EQ(m_pl.createPlaylist("Second"), 2);
    EXPECT_TRUE(PlaylistsApi::answered(m_pl.command("create-collection", R"({"name": "Box"})"), ApiCalls::i32(1)));
    EXPECT_TRUE(m_pl.titlesAndPaths("playlists:/root").contains("Box|playlists:/collection?clid=1"));

    EXPECT_TRUE(ok("rename-playlist", R"({"plid": "1", "name": "Dinner"})"));
    EXPECT_EQ(m_pl.titlesAndPaths("playlists:/root").mid(3, 2), QStringList({"Dinner|playlists:/tracks/1", "Second|playlists:/tracks/2"}));
    ASSERT_TRUE(m_pl.addTracks(1, {"a", "b", "c", "d"}));

    // Modes arrive as numbers, as decimal text or by name; repeat mode 3 is
    // accepted and turns repeat-all off. The stored row of playlist 1 after
    // each: uid|name|shuffle|repeatAll|lastPlayedIndex.
    const struct
    {
        const char* command;
        const char* value;
        const char* stored;
    } modes[] = {
        {"set-shuffle", R"({"plid": 1, "mode": "on"})", "playlists|1|Dinner|1|0|"},
        {"set-shuffle", R"({"plid": 1, "mode": 0})", "playlists|1|Dinner|0|0|"},
        {"set-shuffle", R"({"plid": 1, "mode": "1"})", "playlists|1|Dinner|1|0|"},
        {"set-repeat", R"({"plid": 1, "mode": "all"})", "playlists|1|Dinner|1|1|"},
        {"set-repeat", R"({"plid": 1, "mode": 3})", "playlists|1|Dinner|1|0|"},
        {"set-repeat", R"({"plid": 1, "mode": "2"})", "playlists|1|Dinner|1|1|"},
        {"set-repeat", R"({"plid": 1, "mode": "one"})", "playlists|1|Dinner|1|0|"},
    };
    for (const auto& m : modes) {
        EXPECT_TRUE(ok(m.command, m.value)) << m.value;
        const QStringList row = storeRows("playlists").filter("playlists|1|");
        EXPECT_TRUE(row.size() == 1 && row.first().startsWith(m.stored)) << m.value << " " << row.join(' ').toStdString();
    }
    // The play queue takes the modes like any playlist.
    EXPECT_TRUE(ok("set-shuffle", R"({"plid": 0, "mode": 1})"));

    EXPECT_TRUE(ok("move-items", R"({"plid": 1, "items": [3], "to": 0})"));
    EXPECT_EQ(m_pl.titles("playlists:/tracks/1"), QStringList({"d", "a", "b", "c"}));
    // The last position is a valid target.
    EXPECT_TRUE(ok("move-items", R"({"plid": 1, "items": ["0"], "to": 3})"));
    EXPECT_EQ(m_pl.titles("playlists:/tracks/1"), QStringList({"a", "b", "c", "d"}));
    EXPECT_TRUE(ok("remove-items", R"({"plid": 1, "items": [2, 0]})"));
    EXPECT_EQ(m_pl.titles("playlists:/tracks/1"), QStringList({"b", "d"}));

    EXPECT_TRUE(ok("add-to-collection", R"({"clid": 1, "plid": 2})"));
    EXPECT_TRUE(ok("add-to-collection", R"({"clid": 1, "plid": 1})"));
    EXPECT_EQ(storeRows("collections_playlists"), QStringList({"collections_playlists|1|1", "collections_playlists|1|2"}));
    EXPECT_TRUE(ok("remove-from-collection", R"({"clid": 1, "plid": 2})"));
    EXPECT_EQ(storeRows("collections_playlists"), QStringList({"collections_playlists|1|1"}));

    // Content of another module arrives through its prepare-items; any
    // position appends to an empty playlist.
    EXPECT_TRUE(ok("add-items", R"({"plid": 2, "mode": "sideways", "items": ["testmod:/x", "testmod:/y"]})"));
    EXPECT_EQ(m_pl.titles("playlists:/tracks/2"), QStringList({"Track testmod:/x", "Track testmod:/y"}));

    EXPECT_TRUE(ok("play-playlist", R"({"plid": 2})"));
    ASSERT_TRUE(m_pl.addTracks(0, {"q"}));
    EXPECT_EQ(m_pl.titles("playlists:/queue"), QStringList({"q"}));
    EXPECT_TRUE(ok("clear-playlist", R"({"plid": 0})"));
    EXPECT_TRUE(ok("clear-playlist", R"({"plid": 2})"));
    EXPECT_EQ(m_pl.titles("playlists:/tracks/2"), QStringList());
    EXPECT_EQ(m_pl.titles("playlists:/queue"), QStringList());

    EXPECT_TRUE(ok("delete-collection", R"({"clid": 1})"));
    EXPECT_TRUE(ok("delete-playlist", R"({"plid": 1})"));
    EXPECT_TRUE(ok("delete-playlist", R"({"plid": 2})"));
    EXPECT_EQ(m_pl.titlesAndPaths("playlists:/root"), baseline);
    EXPECT_EQ(m_pl.store(), QStringList({"playlists|0|PlayQueue|1|0|-1"}));

    for (const char* line : {"Playlist id: 1, name: Party created successfully", "Collection id: 1, name: Box created successfully",
                             "Playlist id:1 successfully renamed to: Dinner", "Playlist id:1 set shuffle: 1", "Playlist id:1 set repeat all: 2",
                             "Items in playlist id: 1 moved successfully to position: 3", "Removed 2 items from playlist id: 1",
                             "Playlist id: 2 added to collection id: 1", "Playlist id: 2 removed from collection id: 1",
                             "Items added successfully to playlist id: 0", "Playlist id: 2 cleared successfully",
                             "Collection id: 1 deleted successfully", "Playlist id: 2 deleted successfully"})
        EXPECT_TRUE(logHas(0, QByteArray("INFO  [PlayLists] ") + line + '\n')) << "did not log " << line;
}

// Every check of every command, in the order the checks run: each case
// passes the checks before it, so a check that runs too early or too late
// answers another text. None of them may change anything.
TEST_F(CommandsApiReplies, RefusalsNameTheFirstFailedCheckAndChangeNothing)
{
    ASSERT_EQ(m_pl.createPlaylist("Party"), 1);
    ASSERT_EQ(m_pl.createPlaylist("Quiet"), 2);
    ASSERT_EQ(m_pl.createCollection("Box"), 1);
    ASSERT_TRUE(m_pl.addTracks(1, {"a", "b", "c"}));
    ASSERT_TRUE(ok("add-to-collection", R"({"clid": 1, "plid": 1})"));
    const QStringList before = m_pl.state();

    const struct
    {
        const char* command;
        const char* value;
        const char* message;
        const char* logLine = ""; // the ERROR line the refusal writes, if any
    } cases[] = {
        {"create-playlist", R"({})", "Could not create playlist. Please provide a non-empty string as field. (name)", "Cannot create playlist with empty name"},
        {"create-playlist", R"({"name": ""})", "Could not create playlist. Please provide a non-empty string as field. (name)"},
        {"create-collection", R"({"name": ""})", "Could not create collection. Please provide a non-empty string as field. (name)", "Cannot create collection with empty name"},
        {"delete-collection", R"({"clid": 99})", "Could not delete collection. There is no collection with this ID. (99)", "Unable to find collection id: 99"},
        {"delete-collection", R"({})", "Could not delete collection. There is no collection with this ID. (-1)"},
        {"rename-playlist", R"({"plid": -1, "name": ""})", "Could not set playlist name. Cannot find playlist with invalid ID. (-1)", "Cannot rename playlist id: -1"},
        {"rename-playlist", R"({"plid": 0, "name": ""})", "Could not set playlist name. Cannot rename PlayQueue.", "Cannot rename playqueue"},
        {"rename-playlist", R"({"plid": 99, "name": ""})", "Could not set playlist name. Please provide a non-empty string as field. (name)", "Cannot rename playlist id:99 to empty string"},
        {"rename-playlist", R"({"plid": 99, "name": "X"})", "Could not set playlist name. There is no playlist with this ID. (99)", "Playlist id: 99 doesn't exist"},
        {"rename-playlist", R"({"plid": -7, "name": "X"})", "Could not set playlist name. There is no playlist with this ID. (-7)", "There is no playlist with ID : -7"},
        {"set-shuffle", R"({"plid": -1, "mode": 7})", "Could not set shuffle mode on playlist. Cannot find playlist with invalid ID. (-1)", "Cannot set shuffle for invalid playlist id: -1"},
        {"set-shuffle", R"({"plid": 99, "mode": 2})", "Could not set shuffle mode on playlist. Invalid shuffle mode. (shuffle-mode)", "Cannot set shuffle mode: 2"},
        {"set-shuffle", R"({"plid": 1, "mode": "3"})", "Could not set shuffle mode on playlist. Invalid shuffle mode. (shuffle-mode)"},
        {"set-shuffle", R"({"plid": 1, "mode": "all"})", "Could not set shuffle mode on playlist. Invalid shuffle mode. (shuffle-mode)"},
        {"set-shuffle", R"({"plid": 1})", "Could not set shuffle mode on playlist. Invalid shuffle mode. (shuffle-mode)"},
        {"set-shuffle", R"({"plid": 99, "mode": 1})", "Could not set shuffle mode on playlist. There is no playlist with this ID. (99)", "Playlist id: 99 doesn't exist"},
        {"set-repeat", R"({"plid": -1, "mode": 4})", "Could not set repeat mode on playlist. Cannot find playlist with invalid ID. (-1)", "Cannot set repeat for invalid playlist id: -1"},
        {"set-repeat", R"({"plid": 99, "mode": 4})", "Could not set repeat mode on playlist. Invalid repeat mode. (repeat-mode)", "Cannot set repeat mode: 4"},
        {"set-repeat", R"({"plid": 1, "mode": "sometimes"})", "Could not set repeat mode on playlist. Invalid repeat mode. (repeat-mode)"},
        {"set-repeat", R"({"plid": 99, "mode": "3"})", "Could not set repeat mode on playlist. There is no playlist with this ID. (99)"},
        {"delete-playlist", R"({"plid": -1})", "Could not delete playlist. Cannot find playlist with invalid ID. (-1)", "Cannot delete invalid playlist id: -1"},
        {"delete-playlist", R"({"plid": 0})", "Could not delete playlist. Cannot delete PlayQueue.", "Cannot delete playqueue"},
        {"delete-playlist", R"({"plid": 99})", "Could not delete playlist. There is no playlist with this ID. (99)", "Playlist id: 99 doesn't exist"},
        {"add-to-collection", R"({"clid": 99, "plid": -1})", "Could not add items to collection. Cannot find playlist with invalid ID. (-1)", "Cannot find playlist with invalid ID : -1"},
        {"add-to-collection", R"({"clid": 99, "plid": 99})", "Could not add items to collection. There is no collection with this ID. (99)", "Collection id: 99doesn't exist"},
        {"add-to-collection", R"({"clid": 1, "plid": 99})", "Could not add items to collection. There is no playlist with this ID. (99)", "Unable to add playList to collection, playlist id: 99 doesn't exist"},
        {"add-to-collection", R"({"clid": 1, "plid": 1})", "Could not add items to collection. Add playlist to collection failed.", "Unable to add playList id: 1 to collection id: 1"},
        {"remove-from-collection", R"({"clid": 99, "plid": -1})", "Could not remove items from collection. Cannot find playlist with invalid ID. (-1)"},
        {"remove-from-collection", R"({"clid": 99, "plid": 99})", "Could not remove items from collection. There is no collection with this ID. (99)", "Collection id: 99doesn't exist"},
        {"remove-from-collection", R"({"clid": 1, "plid": 99})", "Could not remove items from collection. There is no playlist with this ID. (99)", "Unable to remove playList from collection, playlist id: 99 doesn't exist"},
        {"remove-from-collection", R"({"clid": 1, "plid": 2})", "Could not remove items from collection. Remove playlist from collection failed.", "Unable to remove playList, id: 2 from collection id: 1"},
        {"clear-playlist", R"({"plid": -1})", "Could not clear playlist. Cannot find playlist with invalid ID. (-1)", "Cannot clear items from invalid playlist id: -1"},
        {"clear-playlist", R"({"plid": 99})", "Could not clear playlist. There is no playlist with this ID. (99)", "Playlist id: 99 doesn't exist"},
        {"move-items", R"({"plid": -1, "items": [], "to": -1})", "Could not move items in playlist. Cannot find playlist with invalid ID. (-1)", "Cannot move items in invalid playlist id: -1"},
        {"move-items", R"({"plid": 99, "items": [], "to": -1})", "Could not move items in playlist. Please select one or more items to move.", "Please select one or more items to move in playlist id: 99"},
        {"move-items", R"({"plid": 99, "items": [0], "to": -1})", "Could not move items in playlist. Cannot move items to negative position.", "Cannot move items to negative position in playlist id: 99"},
        {"move-items", R"({"plid": 99, "items": [0]})", "Could not move items in playlist. Cannot move items to negative position."},
        {"move-items", R"({"plid": 99, "items": [9], "to": 9})", "Could not move items in playlist. There is no playlist with this ID. (99)", "Playlist id: 99 doesn't exist"},
        {"move-items", R"({"plid": 1, "items": [0], "to": 3})", "Could not move items in playlist. Cannot move items, sequence number is not in valid range.", "Cannot move items, sequence number is not in valid range"},
        {"move-items", R"({"plid": 1, "items": [3], "to": 0})", "Could not move items in playlist. Cannot move items, sequence number is not in valid range."},
        // Towards the back the third position would be paired with target -1.
        {"move-items", R"({"plid": 1, "items": [0, 2, 1], "to": 1})", "Could not move items in playlist. Cannot move items, sequence number is not in valid range."},
        {"move-items", R"({"plid": 1, "items": [0, "x"], "to": 1})", "Could not move items in playlist. Please select one or more items to move."},
        {"remove-items", R"({"plid": -1, "items": []})", "Could not remove items from playlist. Cannot find playlist with invalid ID. (-1)", "Cannot delete items from invalid playlist id: -1"},
        {"remove-items", R"({"plid": 99, "items": []})", "Could not remove items from playlist. Please select one or more items to remove.", "Cannot delete zero items from playlist id: 99"},
        {"remove-items", R"({"plid": 99, "items": [0]})", "Could not remove items from playlist. There is no playlist with this ID. (99)", "Playlist id: 99 doesn't exist"},
        {"remove-items", R"({"plid": 1, "items": [3, 4]})", "Could not remove items from playlist. Remove items failed", "Remove items from playlist id: 1 failed"},
        // A list that is partly outside, or names an entry twice, removes nothing.
        {"remove-items", R"({"plid": 1, "items": [0, 3]})", "Could not remove items from playlist. Remove items failed"},
        {"remove-items", R"({"plid": 1, "items": [1, 1]})", "Could not remove items from playlist. Remove items failed"},
        {"play-playlist", R"({"plid": -1})", "Could not start playback on playlist. Cannot find playlist with invalid ID. (-1)", "Cannot play invalid playlist id: -1"},
        {"play-playlist", R"({"plid": 99})", "Could not start playback on playlist. There is no playlist with this ID. (99)", "Playlist id: 99 doesn't exist"},
        {"play-playlist", R"({"plid": 0})", "Could not start playback on playlist. There are no items in the playlist. (PlayQueue)"},
        {"play-playlist", R"({"plid": 2})", "Could not start playback on playlist. There are no items in the playlist. (Quiet)"},
        {"add-external-items", R"({"plid": -1, "mode": "sideways", "items": []})", "Could not add external items to playlist. Cannot find playlist with invalid ID. (-1)", "Cannot add items to invalid playlist id: -1"},
        {"add-external-items", R"({"plid": 99, "mode": "next", "items": []})", "Could not add external items to playlist. Please select one or more items to add.", "Cannot add zero items to playlist id: 99"},
        {"add-external-items", R"({"plid": 99, "items": [{"vexaRoles": "{}"}]})", "Could not add external items to playlist. There is no playlist with this ID. (99)", "Playlist id: 99 doesn't exist"},
        {"add-external-items", R"({"plid": 1, "items": [{"vexaRoles": "{\"title\": \"t\"}"}, {"title": "u"}]})", "Could not add external items to playlist. No items were added."},
        {"add-items", R"({"plid": -1, "fromPlid": 99})", "Could not add items to playlist. There is no playlist with this ID. (99)", "There is no playlist with ID : 99"},
        {"add-items", R"({"plid": -1, "fromPlid": 2})", "Could not add items to playlist. Cannot find playlist with invalid ID. (-1)"},
        {"add-items", R"({"plid": 1, "fromPlid": 2})", "Could not add items to playlist. Please select one or more items to add.", "There isn't any items to add to playlist id: 1"},
        {"add-items", R"({"plid": 99, "items": ["testmod:/x"]})", "Could not add items to playlist. No items were added. (There is no playlist with this ID. (99))"},
        // The store knows no position but now, next and append, except in an
        // empty playlist; only the asynchronous add gives the reason.
        {"add-items", R"({"plid": 1, "items": ["testmod:/x"], "mode": "later"})", "Could not add items to playlist. No items were added. (Unable to add more items to the playlist. Items reached limit.)"},
        {"add-external-items", R"({"plid": 1, "mode": 3, "items": [{"vexaRoles": "{\"title\": \"t\", \"type\": \"audio\", \"mediaData\": {\"resources\": [{\"uri\": \"u\"}]}}"}]})", "Could not add external items to playlist. No items were added."},
        // Values of the wrong shape read as missing fields: an id that is not a
        // whole number in range is -1, a name that is not text is no name, a
        // list that is not a list of the right things is empty.
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
        {"add-external-items", R"({"plid": 1, "items": [{"vexaRoles": "not json"}]})", "Could not add external items to playlist. No items were added."},
    };
    for (const auto& c : cases) {
        const int logSize = m_host.log().size();
        const HttpReply reply = m_pl.command(c.command, c.value);
        const std::string label = std::string(c.command) + " " + c.value;
        EXPECT_EQ(reply.status, 422) << label << " " << reply.body.constData();
        EXPECT_EQ(reply.errorName(), "error") << label;
        EXPECT_EQ(reply.json().toHash().value("error").toHash().value("title").toString(), "Error") << label;
        EXPECT_EQ(reply.errorMessage(), QString::fromUtf8(c.message)) << label;
        EXPECT_TRUE(!*c.logLine || logHas(logSize, QByteArray("ERROR [PlayLists] ") + c.logLine + '\n')) << label << " did not log " << c.logLine;
    }
    EXPECT_EQ(m_pl.state(), before);
}

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

namespace {

const QString kVacuumFlag = "settings:/playlists/vacuumNeeded";

// Logging at INFO, so that vacuums show.
class CommandsApiLifecycle : public PlaylistsHostTest
{
protected:
    CommandsApiLifecycle() : PlaylistsHostTest({"--log-level", "INFO"}) {}

    QVariant setting(const QString& path) const { return m_pl.api().data(path, "value").json().toHash().value("value"); }
    bool vacuumFlag() const { return setting(kVacuumFlag).toHash().value("bool_").toBool(); }
    int vacuums() const { return m_host.log().count("INFO  [PlayLists] sqlite vacuum duration: "); }

    // Sets the power manager's target, then waits until the module's thread
    // has dealt with the change: a row request queues behind it.
    void setPowerTarget(int target) const
    {
        ASSERT_EQ(m_pl.set("power:/target", QVariantHash{{"type", "powerTarget"}, {"powerTarget", QVariantHash{{"target", target}}}}).status, 200);
        ASSERT_EQ(m_pl.api().rows("playlists:/root").status, 200);
    }

    // Creates and deletes a playlist: a deletion is what asks for a vacuum.
    void createAndDelete() const
    {
        const int plid = m_pl.createPlaylist("Short-lived");
        ASSERT_GT(plid, 0);
        ASSERT_TRUE(PlaylistsApi::answeredTrue(m_pl.command("delete-playlist", QVariantHash{{"plid", plid}})));
    }
};

} // namespace

TEST_F(CommandsApiLifecycle, ARestartKeepsPlaylistsCollectionsAndSettingsAndEmptiesThePlayQueue)
{
    ASSERT_EQ(m_pl.createPlaylist("Keep"), 1);
    ASSERT_EQ(m_pl.createPlaylist("Other"), 2);
    ASSERT_EQ(m_pl.createCollection("Box"), 1);
    ASSERT_TRUE(m_pl.addTracks(1, {"a", "b"}));
    for (const auto& c : {std::make_pair("add-to-collection", R"({"clid": 1, "plid": 1})"),
                          std::make_pair("set-shuffle", R"({"plid": 1, "mode": "on"})"), std::make_pair("set-repeat", R"({"plid": 2, "mode": "all"})")})
        ASSERT_TRUE(PlaylistsApi::answeredTrue(m_pl.command(c.first, c.second)));
    ASSERT_EQ(m_pl.set("settings:/playlists/itemLimit", ApiCalls::i32(500)).status, 200);
    const QStringList kept = m_pl.state();
    const QStringList tracks = m_pl.titlesAndPaths("playlists:/tracks/1");
    const QStringList members = m_pl.titlesAndPaths("playlists:/collection?clid=1");
    ASSERT_EQ(members.size(), 1);
    ASSERT_TRUE(m_pl.addTracks(0, {"q1", "q2"}));
    ASSERT_EQ(m_pl.titles("playlists:/queue"), QStringList({"q1", "q2"}));

    start();
    EXPECT_EQ(m_pl.titles("playlists:/queue"), QStringList());
    // The store as it was before the queue was filled: the queue's items are gone with it.
    EXPECT_EQ(m_pl.state(), kept);
    EXPECT_EQ(m_pl.titlesAndPaths("playlists:/tracks/1"), tracks);
    EXPECT_EQ(m_pl.titlesAndPaths("playlists:/collection?clid=1"), members);
    EXPECT_EQ(setting("settings:/playlists/itemLimit"), QVariant(ApiCalls::i32(500)));
}

TEST_F(CommandsApiLifecycle, ADeletionRaisesTheVacuumFlagAndOnlyAPowerChangeFromOneToTwoVacuums)
{
    ASSERT_FALSE(vacuumFlag());
    createAndDelete();
    EXPECT_TRUE(vacuumFlag());
    // Power targets set in turn, with the vacuums counted after each.
    const auto steps = [this](std::initializer_list<int> targets, int expected) {
        for (int target : targets)
            setPowerTarget(target);
        EXPECT_EQ(vacuums(), expected) << "after power target " << *(targets.end() - 1);
    };
    steps({1}, 0);
    steps({2}, 1);
    EXPECT_FALSE(vacuumFlag());
    steps({1}, 1);

    // Clearing a filled playlist asks again; the next change from 1 to 2
    // vacuums once more, and one without a request does nothing.
    ASSERT_EQ(m_pl.createPlaylist("Filled"), 1);
    ASSERT_TRUE(m_pl.addTracks(1, {"a"}));
    EXPECT_FALSE(vacuumFlag());
    ASSERT_TRUE(PlaylistsApi::answeredTrue(m_pl.command("clear-playlist", R"({"plid": 1})")));
    EXPECT_TRUE(vacuumFlag());
    steps({3, 2}, 1);
    steps({1, 2}, 2);
    EXPECT_FALSE(vacuumFlag());
    steps({1, 2}, 2);

    // A flag still raised at a start vacuums the store as it opens, and stays
    // raised: only a vacuum while running clears it.
    createAndDelete();
    start();
    EXPECT_EQ(vacuums(), 3);
    EXPECT_TRUE(vacuumFlag());
    EXPECT_EQ(m_pl.titles("playlists:/root").mid(3, 1), QStringList({"Filled"}));
}

TEST_F(CommandsApiLifecycle, RefusalsAreInTheLanguageOfTheSettingsWithDetailsLeftAsTheyAre)
{
    const auto messages = [this]() {
        return QStringList{m_pl.command("rename-playlist", R"({"plid": 0, "name": ""})").errorMessage(),
                           m_pl.command("create-playlist", R"({"name": ""})").errorMessage(),
                           m_pl.command("delete-playlist", R"({"plid": 99})").errorMessage()};
    };
    const QStringList english{"Could not set playlist name. Cannot rename PlayQueue.",
                              "Could not create playlist. Please provide a non-empty string as field. (name)",
                              "Could not delete playlist. There is no playlist with this ID. (99)"};
    EXPECT_EQ(messages(), english);

    ASSERT_EQ(m_pl.set("settings:/language", PlaylistsApi::stringValue("de")).status, 200);
    EXPECT_EQ(messages(), QStringList({"Der Name der Playlist konnte nicht gesetzt werden. Die Warteschlange kann nicht umbenannt werden.",
                                       "Die Playlist konnte nicht erstellt werden. Bitte geben Sie für das Feld einen nicht leeren Text an. (name)",
                                       "Die Playlist konnte nicht gelöscht werden. Es gibt keine Playlist mit dieser ID. (99)"}));

    // A language without a catalogue keeps the texts as written.
    ASSERT_EQ(m_pl.set("settings:/language", PlaylistsApi::stringValue("fr")).status, 200);
    EXPECT_EQ(messages(), english);
}
