#include "BrowseTreeClient.h"
#include "HostProcess.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

using J = BrowseTreeClient;

const char* kQueueRow = R"({"containerPlayable": true, "path": "playlists:/queue", "title": "PlayQueue", "type": "container",
    "mediaData": {"metaData": {"playLogicPath": "playlists:/playlogic"}},
    "context": {"title": "PlayQueue", "path": "playlists:/menu/queue?plid=0", "type": "container", "containerType": "contextMenu"}})";
const char* kPlaylistsHeader = R"({"title": "Playlists", "type": "header"})";
const char* kCreatePlaylistRow = R"({"title": "Create New Playlist", "path": "playlists:/root?action=createPl", "type": "input",
    "value": {"type": "string_", "string_": ""}, "modifiable": true})";
const char* kCollectionsHeader = R"({"title": "Collections", "type": "header"})";
const char* kCreateCollectionRow = R"({"title": "Create New Collection", "path": "playlists:/root?action=createCl", "type": "input",
    "value": {"type": "string_", "string_": ""}, "modifiable": true})";

QStringList rowTexts(const QVariantList& rows)
{
    QStringList texts;
    for (const QVariant& row : rows)
        texts.append(QString::fromStdString(J::text(row)));
    return texts;
}

QStringList expectedTexts(std::initializer_list<const char*> rows)
{
    QStringList texts;
    for (const char* row : rows)
        texts.append(QString::fromStdString(J::text(row)));
    return texts;
}

class BrowseApi : public ::testing::Test
{
protected:
    explicit BrowseApi(const QStringList& extraArguments = {})
        : m_host({HostProcess::playlistsModule(), QStringLiteral("libvexa_testmod.so")},
                 QStringList{QStringLiteral("--time-scale"), QStringLiteral("1000")} + extraArguments)
    {
    }

    void SetUp() override
    {
        QString error;
        ASSERT_TRUE(m_host.start(&error)) << error.toStdString();
    }

    void setSetting(const char* name, bool value)
    {
        ASSERT_EQ(tree().setData(QStringLiteral("settings:/playlists/") + QLatin1String(name), J::boolValue(value)).status, 200);
    }

    void restart()
    {
        QString error;
        ASSERT_TRUE(m_host.restart(&error)) << error.toStdString();
    }

    BrowseTreeClient tree() const { return BrowseTreeClient(m_host); }

    HostProcess m_host;
};

TEST_F(BrowseApi, TheRootListsTheQueueThePlaylistsAndTheCollectionsEachWithItsMenu)
{
    const QVariantHash empty = tree().rows(QStringLiteral("playlists:/root"));
    EXPECT_EQ(empty.value(QStringLiteral("title")).toString().toStdString(), std::string("Playlists"));
    EXPECT_EQ(empty.value(QStringLiteral("rowsCount")).toInt(), 5);
    EXPECT_EQ(rowTexts(empty.value(QStringLiteral("rows")).toList()),
              expectedTexts({kQueueRow, kPlaylistsHeader, kCreatePlaylistRow, kCollectionsHeader, kCreateCollectionRow}));

    ASSERT_EQ(tree().createPlaylist(QStringLiteral("b-side")), 1);
    ASSERT_EQ(tree().createPlaylist(QStringLiteral("Alpha")), 2);
    ASSERT_EQ(tree().createCollection(QStringLiteral("Evening")), 1);
    const QVariantHash full = tree().rows(QStringLiteral("playlists:/root"));
    EXPECT_EQ(full.value(QStringLiteral("rowsCount")).toInt(), 8);
    // Playlists by name; a playlist row opens its tracks as a sub-path, a
    // collection row names its collection as a parameter and has no media data.
    EXPECT_EQ(rowTexts(full.value(QStringLiteral("rows")).toList()),
              expectedTexts({kQueueRow, kPlaylistsHeader, kCreatePlaylistRow,
                             R"({"containerPlayable": true, "path": "playlists:/tracks/2", "title": "Alpha", "type": "container",
                                 "mediaData": {"metaData": {"playLogicPath": "playlists:/playlogic"}},
                                 "context": {"title": "Playlist Context Menu - Alpha", "path": "playlists:/menu/playlist?plid=2",
                                             "type": "container", "containerType": "contextMenu"}})",
                             R"({"containerPlayable": true, "path": "playlists:/tracks/1", "title": "b-side", "type": "container",
                                 "mediaData": {"metaData": {"playLogicPath": "playlists:/playlogic"}},
                                 "context": {"title": "Playlist Context Menu - b-side", "path": "playlists:/menu/playlist?plid=1",
                                             "type": "container", "containerType": "contextMenu"}})",
                             kCollectionsHeader, kCreateCollectionRow,
                             R"({"containerPlayable": true, "path": "playlists:/collection?clid=1", "title": "Evening", "type": "container",
                                 "context": {"title": "Collection Context Menu - Evening", "path": "playlists:/menu/collection?clid=1",
                                             "type": "container", "containerType": "contextMenu"}})"}));

    // Pages of the root: only the rows asked for, always with the full count.
    const QVariantHash one = tree().rows(QStringLiteral("playlists:/root"), QStringLiteral("title"), 2, 2);
    EXPECT_EQ(J::text(one.value(QStringLiteral("rows"))), J::text(R"([["Create New Playlist"]])"));
    EXPECT_EQ(one.value(QStringLiteral("rowsCount")).toInt(), 8);
    const QVariantHash tail = tree().rows(QStringLiteral("playlists:/root"), QStringLiteral("title,type"), 6, 40);
    EXPECT_EQ(J::text(tail.value(QStringLiteral("rows"))), J::text(R"([["Create New Collection", "input"], ["Evening", "container"]])"));
    EXPECT_EQ(tail.value(QStringLiteral("rowsCount")).toInt(), 8);
}

TEST_F(BrowseApi, VisibilitySettingsTakeEffectWhenTheTreeIsBuiltAgain)
{
    ASSERT_EQ(tree().createPlaylist(QStringLiteral("Mix")), 1);
    const QStringList everything{QStringLiteral("PlayQueue"), QStringLiteral("Playlists"), QStringLiteral("Create New Playlist"),
                                 QStringLiteral("Mix"), QStringLiteral("Collections"), QStringLiteral("Create New Collection")};

    setSetting("showQueue", false);
    EXPECT_EQ(J::text(tree().titles(QStringLiteral("playlists:/root"))), J::text(everything)) << "nodes read the settings once, when built";
    restart();
    EXPECT_EQ(J::text(tree().titles(QStringLiteral("playlists:/root"))), J::text(everything.mid(1)));

    setSetting("showQueue", true);
    setSetting("showCollections", false);
    restart();
    EXPECT_EQ(J::text(tree().titles(QStringLiteral("playlists:/root"))), J::text(everything.mid(0, 4)));

    setSetting("showQueue", false);
    restart();
    EXPECT_EQ(J::text(tree().titles(QStringLiteral("playlists:/root"))), J::text(everything.mid(1, 3)));
    // The menus and lists do not depend on the settings.
    EXPECT_EQ(tree().titles(QStringLiteral("playlists:/menu/queue?plid=0")).size(), 4);
    EXPECT_EQ(tree().rows(QStringLiteral("playlists:/queue")).value(QStringLiteral("title")).toString(),
              QStringLiteral("PlayQueue tracks"));
}

TEST_F(BrowseApi, CreateRowsOfTheRootAndOfTheListCreateThroughTheRoot)
{
    const HttpReply created = tree().setData(QStringLiteral("playlists:/root?action=createPl"), J::stringValue(QStringLiteral("Road")));
    ASSERT_EQ(created.status, 200) << created.body.constData();
    EXPECT_EQ(J::text(created.json()), J::text(R"({"xclass": "VexaActionReply", "result": {"value": {"type": "i32_", "i32_": 1}}})"));

    // The list's create row points at the root with the list's own parameters.
    const QVariantList list = tree().rowList(QStringLiteral("playlists:/lists?view=compact"));
    EXPECT_EQ(rowTexts(list),
              expectedTexts({R"({"title": "Create new playlist", "path": "playlists:/root?view=compact&action=createPl",
                                 "type": "input", "value": {"type": "string_", "string_": ""}, "modifiable": true})",
                             R"({"path": "playlists:/tracks/1", "title": "Road", "type": "container",
                                 "mediaData": {"metaData": {"playLogicPath": "playlists:/playlogic"}},
                                 "context": {"title": "Playlist Context Menu - Road", "path": "playlists:/menu/playlist?plid=1",
                                             "type": "container", "containerType": "contextMenu"}})"}));
    EXPECT_EQ(tree().rows(QStringLiteral("playlists:/lists")).value(QStringLiteral("title")).toString().toStdString(), std::string("Playlists"));
    const QString listCreate = list.value(0).toHash().value(QStringLiteral("path")).toString();
    const HttpReply second = tree().setData(listCreate, J::stringValue(QStringLiteral("City")));
    EXPECT_EQ(J::text(second.json().toHash().value(QStringLiteral("result"))), J::text(R"({"value": {"type": "i32_", "i32_": 2}})"));

    const HttpReply collection = tree().setData(QStringLiteral("playlists:/root?action=createCl"), J::stringValue(QStringLiteral("Cl")));
    EXPECT_EQ(J::text(collection.json().toHash().value(QStringLiteral("result"))), J::text(R"({"value": {"type": "i32_", "i32_": 1}})"));
    EXPECT_EQ(J::text(tree().titles(QStringLiteral("playlists:/root")).mid(3)),
              J::text((QStringList{QStringLiteral("City"), QStringLiteral("Road"), QStringLiteral("Collections"),
                           QStringLiteral("Create New Collection"), QStringLiteral("Cl")})));

    // A create without a name reaches the command, whose refusal comes back as it is.
    for (const char* action : {"createPl", "createCl"}) {
        const HttpReply unnamed = tree().setData(QStringLiteral("playlists:/root?action=") + QLatin1String(action), QVariantHash());
        const HttpReply direct = tree().setData(
            action == QLatin1String("createPl") ? QStringLiteral("playlists:/create-playlist") : QStringLiteral("playlists:/create-collection"),
            QVariantHash());
        EXPECT_EQ(unnamed.status, 422) << action;
        EXPECT_FALSE(unnamed.errorMessage().isEmpty());
        EXPECT_EQ(unnamed.errorMessage().toStdString(), direct.errorMessage().toStdString()) << action;
    }
    // Other actions, or none, are not the root's: nothing is created.
    for (const char* path : {"playlists:/root", "playlists:/root?action=createpl", "playlists:/root?action=play"})
        EXPECT_EQ(tree().setData(QLatin1String(path), J::stringValue(QStringLiteral("X"))).errorName(), QStringLiteral("invalidPath")) << path;
    EXPECT_EQ(tree().rows(QStringLiteral("playlists:/root")).value(QStringLiteral("rowsCount")).toInt(), 8);
}

TEST_F(BrowseApi, ACollectionListsItsPlaylistsWithTheShortMenuTitle)
{
    const int road = tree().createPlaylist(QStringLiteral("Road"));
    const int city = tree().createPlaylist(QStringLiteral("City"));
    const int cl = tree().createCollection(QStringLiteral("Trips"));
    ASSERT_EQ(cl, 1);
    for (int plid : {road, city}) {
        ASSERT_EQ(tree().setData(QStringLiteral("playlists:/add-to-collection"),
                                 QVariantHash{{QStringLiteral("clid"), cl}, {QStringLiteral("plid"), plid}}).status, 200);
    }
    const QVariantHash listing = tree().rows(QStringLiteral("playlists:/collection?clid=1"));
    EXPECT_EQ(listing.value(QStringLiteral("title")).toString().toStdString(), std::string("Collection - Trips"));
    EXPECT_EQ(listing.value(QStringLiteral("rowsCount")).toInt(), 2);
    const QVariantList rows = listing.value(QStringLiteral("rows")).toList();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(J::text(rows.at(0)), J::text(R"({"containerPlayable": true, "path": "playlists:/tracks/2", "title": "City", "type": "container",
        "mediaData": {"metaData": {"playLogicPath": "playlists:/playlogic"}},
        "context": {"title": "Playlist - City", "path": "playlists:/menu/playlist?plid=2&clid=1", "type": "container", "containerType": "contextMenu"}})"));
    EXPECT_EQ(J::text(rows.at(1).toHash().value(QStringLiteral("path"))), J::text(R"("playlists:/tracks/1")"));
    EXPECT_EQ(J::text(tree().rows(QStringLiteral("playlists:/collection?clid=1"), QStringLiteral("title"), 1, 1).value(QStringLiteral("rows"))),
              J::text(R"([["Road"]])"));

    ASSERT_EQ(tree().createCollection(QStringLiteral("Empty")), 2);
    const QVariantHash empty = tree().rows(QStringLiteral("playlists:/collection?clid=2"));
    EXPECT_EQ(empty.value(QStringLiteral("title")).toString().toStdString(), std::string("Collection - Empty"));
    EXPECT_EQ(empty.value(QStringLiteral("rowsCount")).toInt(), 0);
    EXPECT_EQ(J::text(tree().rows(QStringLiteral("playlists:/collection?clid=9"), QStringLiteral("title")).value(QStringLiteral("rows"))), "[]");
}

TEST_F(BrowseApi, TitlesAreTranslatedInTheContextOfTheirNode)
{
    const int plid = tree().createPlaylist(QStringLiteral("Road"));
    ASSERT_EQ(tree().createCollection(QStringLiteral("Trips")), 1);
    ASSERT_TRUE(tree().addTracks(plid, {QStringLiteral("R0")}));
    ASSERT_EQ(tree().setData(QStringLiteral("settings:/language"), J::stringValue(QStringLiteral("de"))).status, 200);

    struct Expected
    {
        const char* path;
        const char* title;
        const char* firstRows;
    } const expected[] = {
        {"playlists:/root", "Playlists", R"(["PlayQueue", "Playlists", "Neue Playlist erstellen", "Road", "Sammlungen", "Neue Sammlung erstellen", "Trips"])"},
        {"playlists:/lists", "Playlists", R"(["Neue Playlist erstellen", "Road"])"},
        {"playlists:/queue", "Titel der Warteschlange", "[]"},
        {"playlists:/collection?clid=1", "Sammlung - Trips", "[]"},
        {"playlists:/menu/playlist?plid=1&clid=1", "Playlist-Kontextmenü - Road",
         R"(["Abspielen", "Umbenennen", "Zufallsmodus setzen", "Wiederholmodus setzen", "Mit Playlist zusammenführen",
             "Zur Sammlung hinzufügen", "Aus der Sammlung entfernen - Trips", "", "Playlist leeren", "Playlist löschen"])"},
        {"playlists:/menu/track?action=cmnode&plid=1&itemid=1&seqnum=0", "Titel-Kontextmenü",
         R"(["Zur Warteschlange hinzufügen", "Zur Playlist hinzufügen", "Titel verschieben", "Titel entfernen"])"},
        {"playlists:/menu/add-to-playlist", "Playlists", R"(["Neue Playlist erstellen", "", "Road"])"},
        {"playlists:/menu/add-mode", "Playlists", R"(["Jetzt", "Nach dem aktuellen Titel", "Anhängen"])"},
        {"playlists:/menu/add-to-collection?plid=1", "Playlist zur Sammlung hinzufügen", R"(["Neue Sammlung erstellen", "", "Trips"])"},
        {"playlists:/menu/collection?clid=1", "Sammlungs-Kontextmenü - Trips", R"(["Sammlung löschen"])"},
        {"playlists:/menu/queue?plid=0", "Warteschlangen-Kontextmenü", R"(["Abspielen", "Mit Playlist zusammenführen", "", "Leeren"])"},
    };
    for (const Expected& e : expected) {
        EXPECT_EQ(tree().rows(QLatin1String(e.path)).value(QStringLiteral("title")).toString().toStdString(), std::string(e.title)) << e.path;
        EXPECT_EQ(J::text(tree().titles(QLatin1String(e.path))), J::text(e.firstRows)) << e.path;
    }
    // The context titles built with a translated text are translated too.
    const QVariantHash road = tree().rowList(QStringLiteral("playlists:/root")).value(3).toHash();
    EXPECT_EQ(road.value(QStringLiteral("context")).toHash().value(QStringLiteral("title")).toString(),
              QStringLiteral("Playlist-Kontextmenü - Road"));
}

// A large playlist, with every store read traced.
class BrowseApiLargePlaylist : public BrowseApi
{
protected:
    BrowseApiLargePlaylist() : BrowseApi({QStringLiteral("--log-level"), QStringLiteral("TRACE")}) {}

    // The ranges the store read since the log was offset bytes long, as "from-to".
    QStringList storeReadsSince(int offset) const
    {
        static const QRegularExpression read(QStringLiteral("Enter Database::getItems: pl=\\d+ from=(-?\\d+) to=(-?\\d+)"));
        QStringList ranges;
        auto it = read.globalMatch(QString::fromUtf8(m_host.log().mid(offset)));
        while (it.hasNext()) {
            const auto match = it.next();
            ranges.append(match.captured(1) + QLatin1Char('-') + match.captured(2));
        }
        return ranges;
    }
};

TEST_F(BrowseApiLargePlaylist, APageOfTenThousandEntriesReadsOnlyTheRowsAskedFor)
{
    const int plid = tree().createPlaylist(QStringLiteral("Big"));
    ASSERT_TRUE(tree().addTracks(plid, J::numbered(QStringLiteral("T"), 10000)));

    int mark = m_host.log().size();
    const QVariantHash page = tree().rows(QStringLiteral("playlists:/tracks/1"), QStringLiteral("title,value,id,context"), 9000, 9049);
    EXPECT_EQ(page.value(QStringLiteral("title")).toString().toStdString(), "Playlist - Big");
    EXPECT_EQ(page.value(QStringLiteral("rowsCount")).toInt(), 10000);
    const QVariantList rows = page.value(QStringLiteral("rows")).toList();
    ASSERT_EQ(rows.size(), 50);
    // Each track opens its menu with its playlist, item and position.
    EXPECT_EQ(J::text(rows.first()), J::text(R"(["T9000", {"type": "i32_", "i32_": 9000}, "9001",
        {"title": "Playlist", "type": "container", "containerType": "contextMenu",
         "path": "playlists:/menu/track?action=cmnode&plid=1&itemid=9001&seqnum=9000"}])"));
    EXPECT_EQ(J::text(rows.last().toList().mid(0, 2)), J::text(R"(["T9049", {"type": "i32_", "i32_": 9049}])"));
    EXPECT_EQ(storeReadsSince(mark), QStringList{QStringLiteral("9000-9049")});
    EXPECT_TRUE(m_host.log().mid(mark).contains("sent reply with 50 lines"));

    // Past the end: the rows up to the end and the true count.
    mark = m_host.log().size();
    const QVariantHash end = tree().rows(QStringLiteral("playlists:/tracks/1"), QStringLiteral("title"), 9990, 10200);
    EXPECT_EQ(end.value(QStringLiteral("rowsCount")).toInt(), 10000);
    EXPECT_EQ(end.value(QStringLiteral("rows")).toList().size(), 10);
    EXPECT_EQ(end.value(QStringLiteral("rows")).toList().last().toList().value(0).toString().toStdString(), std::string("T9999"));
    EXPECT_EQ(storeReadsSince(mark).size(), 1);
    EXPECT_TRUE(m_host.log().mid(mark).contains("sent reply with 10 lines"));
}

} // namespace
