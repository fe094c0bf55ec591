#include "PlaylistsApi.h"

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
