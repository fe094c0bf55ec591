#include "PlaylistsApi.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

const QString kVacuumFlag = QStringLiteral("settings:/playlists/vacuumNeeded");
const QByteArray kVacuumLine = "INFO  [PlayLists] sqlite vacuum duration: ";

QVariantHash stringValue(const QString& text)
{
    return {{QStringLiteral("type"), QStringLiteral("string_")}, {QStringLiteral("string_"), text}};
}

// The real host with the playlists module, logging at INFO so that vacuums show.
class CommandsApiLifecycle : public ::testing::Test
{
protected:
    void SetUp() override { start(); }

    void start()
    {
        QString error;
        ASSERT_TRUE(m_host.isRunning() ? m_host.restart(&error) : m_host.start(&error)) << error.toStdString();
        m_pl = std::make_unique<PlaylistsApi>(m_host);
    }

    QVariant setting(const QString& path) const
    {
        return m_pl->api().data(path, QStringLiteral("value")).json().toHash().value(QStringLiteral("value"));
    }

    bool vacuumFlag() const { return setting(kVacuumFlag).toHash().value(QStringLiteral("bool_")).toBool(); }

    // Sets the power manager's target, then waits until the module's thread
    // has dealt with the change: a row request queues behind it.
    void setPowerTarget(int target) const
    {
        const QVariantHash value{{QStringLiteral("type"), QStringLiteral("powerTarget")},
                                 {QStringLiteral("powerTarget"), QVariantHash{{QStringLiteral("target"), target}}}};
        ASSERT_EQ(m_pl->api().setData(QStringLiteral("power:/target"), value).status, 200);
        ASSERT_EQ(m_pl->api().rows(QStringLiteral("playlists:/root")).status, 200);
    }

    int vacuums() const { return m_host.log().count(kVacuumLine); }

    // Creates and deletes a playlist: a deletion is what asks for a vacuum.
    void createAndDelete() const
    {
        const int plid = m_pl->create(QStringLiteral("create-playlist"), QStringLiteral("Short-lived"));
        ASSERT_GT(plid, 0);
        ASSERT_TRUE(PlaylistsApi::answeredTrue(
            m_pl->command(QStringLiteral("delete-playlist"), QVariantHash{{QStringLiteral("plid"), plid}})));
    }

    HostProcess m_host{{HostProcess::playlistsModule()}, {QStringLiteral("--log-level"), QStringLiteral("INFO")}};
    std::unique_ptr<PlaylistsApi> m_pl;
};

} // namespace

TEST_F(CommandsApiLifecycle, ARestartKeepsPlaylistsCollectionsAndSettingsAndEmptiesThePlayQueue)
{
    ASSERT_EQ(m_pl->create(QStringLiteral("create-playlist"), QStringLiteral("Keep")), 1);
    ASSERT_EQ(m_pl->create(QStringLiteral("create-playlist"), QStringLiteral("Other")), 2);
    ASSERT_EQ(m_pl->create(QStringLiteral("create-collection"), QStringLiteral("Box")), 1);
    ASSERT_TRUE(m_pl->addTracks(1, {QStringLiteral("a"), QStringLiteral("b")}));
    ASSERT_TRUE(PlaylistsApi::answeredTrue(m_pl->command(QStringLiteral("add-to-collection"), R"({"clid": 1, "plid": 1})")));
    ASSERT_TRUE(PlaylistsApi::answeredTrue(m_pl->command(QStringLiteral("set-shuffle"), R"({"plid": 1, "mode": "on"})")));
    ASSERT_TRUE(PlaylistsApi::answeredTrue(m_pl->command(QStringLiteral("set-repeat"), R"({"plid": 2, "mode": "all"})")));
    ASSERT_EQ(m_pl->api().setData(QStringLiteral("settings:/playlists/itemLimit"), ApiCalls::i32(500)).status, 200);
    const QStringList kept = m_pl->state();
    const QStringList tracks = m_pl->rows(QStringLiteral("playlists:/tracks/1"));
    const QStringList members = m_pl->rows(QStringLiteral("playlists:/collection?clid=1"));
    ASSERT_EQ(members.size(), 1);

    ASSERT_TRUE(m_pl->addTracks(0, {QStringLiteral("q1"), QStringLiteral("q2")}));
    ASSERT_EQ(m_pl->titles(QStringLiteral("playlists:/queue")), QStringList({"q1", "q2"}));

    start();
    EXPECT_EQ(m_pl->titles(QStringLiteral("playlists:/queue")), QStringList());
    // The store as it was before the queue was filled: the queue's items are gone with it.
    EXPECT_EQ(m_pl->state(), kept);
    EXPECT_EQ(m_pl->rows(QStringLiteral("playlists:/tracks/1")), tracks);
    EXPECT_EQ(m_pl->rows(QStringLiteral("playlists:/collection?clid=1")), members);
    EXPECT_EQ(setting(QStringLiteral("settings:/playlists/itemLimit")), QVariant(ApiCalls::i32(500)));
}

TEST_F(CommandsApiLifecycle, ADeletionRaisesTheVacuumFlagAndOnlyAPowerChangeFromOneToTwoVacuums)
{
    ASSERT_FALSE(vacuumFlag());
    createAndDelete();
    EXPECT_TRUE(vacuumFlag());

    setPowerTarget(1);
    EXPECT_EQ(vacuums(), 0);
    setPowerTarget(2);
    EXPECT_EQ(vacuums(), 1);
    EXPECT_FALSE(vacuumFlag());
    setPowerTarget(1);
    EXPECT_EQ(vacuums(), 1);

    // Clearing a filled playlist asks again; the next change from 1 to 2
    // vacuums once more, and one without a request does nothing.
    ASSERT_EQ(m_pl->create(QStringLiteral("create-playlist"), QStringLiteral("Filled")), 1);
    ASSERT_TRUE(m_pl->addTracks(1, {QStringLiteral("a")}));
    EXPECT_FALSE(vacuumFlag());
    ASSERT_TRUE(PlaylistsApi::answeredTrue(m_pl->command(QStringLiteral("clear-playlist"), R"({"plid": 1})")));
    EXPECT_TRUE(vacuumFlag());
    setPowerTarget(3);
    setPowerTarget(2);
    EXPECT_EQ(vacuums(), 1);
    setPowerTarget(1);
    setPowerTarget(2);
    EXPECT_EQ(vacuums(), 2);
    EXPECT_FALSE(vacuumFlag());
    setPowerTarget(1);
    setPowerTarget(2);
    EXPECT_EQ(vacuums(), 2);

    // A flag still raised at a start vacuums the store as it opens, and stays
    // raised: only a vacuum while running clears it.
    createAndDelete();
    start();
    EXPECT_EQ(vacuums(), 3);
    EXPECT_TRUE(vacuumFlag());
    EXPECT_EQ(m_pl->titles(QStringLiteral("playlists:/root")).mid(3, 1), QStringList({"Filled"}));
}

TEST_F(CommandsApiLifecycle, RefusalsAreInTheLanguageOfTheSettingsWithDetailsLeftAsTheyAre)
{
    const auto messages = [this]() {
        return QStringList{
            m_pl->command(QStringLiteral("rename-playlist"), R"({"plid": 0, "name": ""})").errorMessage(),
            m_pl->command(QStringLiteral("create-playlist"), R"({"name": ""})").errorMessage(),
            m_pl->command(QStringLiteral("delete-playlist"), R"({"plid": 99})").errorMessage(),
        };
    };
    const QStringList english{
        QStringLiteral("Could not set playlist name. Cannot rename PlayQueue."),
        QStringLiteral("Could not create playlist. Please provide a non-empty string as field. (name)"),
        QStringLiteral("Could not delete playlist. There is no playlist with this ID. (99)"),
    };
    EXPECT_EQ(messages(), english);

    ASSERT_EQ(m_pl->api().setData(QStringLiteral("settings:/language"), stringValue(QStringLiteral("de"))).status, 200);
    EXPECT_EQ(messages(),
              QStringList({
                  QStringLiteral("Der Name der Playlist konnte nicht gesetzt werden. Die Warteschlange kann nicht umbenannt werden."),
                  QStringLiteral("Die Playlist konnte nicht erstellt werden. Bitte geben Sie für das Feld einen nicht leeren Text an. (name)"),
                  QStringLiteral("Die Playlist konnte nicht gelöscht werden. Es gibt keine Playlist mit dieser ID. (99)"),
              }));

    // A language without a catalogue keeps the texts as written.
    ASSERT_EQ(m_pl->api().setData(QStringLiteral("settings:/language"), stringValue(QStringLiteral("fr"))).status, 200);
    EXPECT_EQ(messages(), english);
}
