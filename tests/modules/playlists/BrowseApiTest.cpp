#include "PlaylistsApi.h"

namespace {

using J = PlaylistsApi;

// The rows of a rows answer, and the rows expected, as canonical texts.
QStringList texts(const QVariant& rows)
{
    QStringList result;
    for (const QVariant& row : rows.toList())
        result.append(QString::fromStdString(J::text(row)));
    return result;
}
QStringList texts(std::initializer_list<const char*> rows)
{
    QStringList result;
    for (const char* row : rows)
        result.append(QString::fromStdString(J::text(row)));
    return result;
}

const char* kQueueRow = R"({"containerPlayable": true, "path": "playlists:/queue", "title": "PlayQueue", "type": "container",
    "mediaData": {"metaData": {"playLogicPath": "playlists:/playlogic"}},
    "context": {"title": "PlayQueue", "path": "playlists:/menu/queue?plid=0", "type": "container", "containerType": "contextMenu"}})";
const char* kPlaylistsHeader = R"({"title": "Playlists", "type": "header"})";
const char* kCreatePlaylistRow = R"({"title": "Create New Playlist", "path": "playlists:/root?action=createPl", "type": "input",
    "value": {"type": "string_", "string_": ""}, "modifiable": true})";
const char* kCollectionsHeader = R"({"title": "Collections", "type": "header"})";
const char* kCreateCollectionRow = R"({"title": "Create New Collection", "path": "playlists:/root?action=createCl", "type": "input",
    "value": {"type": "string_", "string_": ""}, "modifiable": true})";

using BrowseApi = PlaylistsHostTest;

TEST_F(BrowseApi, TheRootListsTheQueueThePlaylistsAndTheCollectionsEachWithItsMenu)
{
    const QVariantHash empty = m_pl.rows("playlists:/root");
    EXPECT_EQ(empty.value("title"), "Playlists");
    EXPECT_EQ(empty.value("rowsCount"), 5);
    EXPECT_EQ(texts(empty.value("rows")), texts({kQueueRow, kPlaylistsHeader, kCreatePlaylistRow, kCollectionsHeader, kCreateCollectionRow}));

    ASSERT_EQ(m_pl.createPlaylist("b-side"), 1);
    ASSERT_EQ(m_pl.createPlaylist("Alpha"), 2);
    ASSERT_EQ(m_pl.createCollection("Evening"), 1);
    const QVariantHash full = m_pl.rows("playlists:/root");
    EXPECT_EQ(full.value("rowsCount"), 8);
    // Playlists by name; a playlist row opens its tracks as a sub-path, a
    // collection row names its collection as a parameter and has no media data.
    EXPECT_EQ(texts(full.value("rows")), texts({kQueueRow, kPlaylistsHeader, kCreatePlaylistRow,
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
    const QVariantHash one = m_pl.rows("playlists:/root", "title", 2, 2);
    EXPECT_EQ(J::text(one.value("rows")), J::text(R"([["Create New Playlist"]])"));
    EXPECT_EQ(one.value("rowsCount"), 8);
    const QVariantHash tail = m_pl.rows("playlists:/root", "title,type", 6, 40);
    EXPECT_EQ(J::text(tail.value("rows")), J::text(R"([["Create New Collection", "input"], ["Evening", "container"]])"));
    EXPECT_EQ(tail.value("rowsCount"), 8);
}

TEST_F(BrowseApi, VisibilitySettingsTakeEffectWhenTheTreeIsBuiltAgain)
{
    ASSERT_EQ(m_pl.createPlaylist("Mix"), 1);
    const QStringList everything{"PlayQueue", "Playlists", "Create New Playlist", "Mix", "Collections", "Create New Collection"};
    const auto setting = [this](const char* name, bool value) {
        ASSERT_EQ(m_pl.set(QString("settings:/playlists/") + name, J::boolValue(value)).status, 200);
    };

    setting("showQueue", false);
    EXPECT_EQ(m_pl.titles("playlists:/root"), everything) << "nodes read the settings once, when built";
    start();
    EXPECT_EQ(m_pl.titles("playlists:/root"), everything.mid(1));
    setting("showQueue", true);
    setting("showCollections", false);
    start();
    EXPECT_EQ(m_pl.titles("playlists:/root"), everything.mid(0, 4));
    setting("showQueue", false);
    start();
    EXPECT_EQ(m_pl.titles("playlists:/root"), everything.mid(1, 3));
    // The menus and lists do not depend on the settings.
    EXPECT_EQ(m_pl.titles("playlists:/menu/queue?plid=0").size(), 4);
    EXPECT_EQ(m_pl.rows("playlists:/queue").value("title"), "PlayQueue tracks");
}

TEST_F(BrowseApi, CreateRowsOfTheRootAndOfTheListCreateThroughTheRoot)
{
    EXPECT_TRUE(J::answered(m_pl.set("playlists:/root?action=createPl", J::stringValue("Road")), ApiCalls::i32(1)));
    // The list's create row points at the root with the list's own parameters.
    const QVariantList list = m_pl.rowList("playlists:/lists?view=compact");
    EXPECT_EQ(texts(list), texts({R"({"title": "Create new playlist", "path": "playlists:/root?view=compact&action=createPl",
                                      "type": "input", "value": {"type": "string_", "string_": ""}, "modifiable": true})",
                                  R"({"path": "playlists:/tracks/1", "title": "Road", "type": "container",
                                      "mediaData": {"metaData": {"playLogicPath": "playlists:/playlogic"}},
                                      "context": {"title": "Playlist Context Menu - Road", "path": "playlists:/menu/playlist?plid=1",
                                                  "type": "container", "containerType": "contextMenu"}})"}));
    EXPECT_EQ(m_pl.rows("playlists:/lists").value("title"), "Playlists");
    EXPECT_TRUE(J::answered(m_pl.set(list.value(0).toHash().value("path").toString(), J::stringValue("City")), ApiCalls::i32(2)));
    EXPECT_TRUE(J::answered(m_pl.set("playlists:/root?action=createCl", J::stringValue("Cl")), ApiCalls::i32(1)));
    EXPECT_EQ(m_pl.titles("playlists:/root").mid(3), QStringList({"City", "Road", "Collections", "Create New Collection", "Cl"}));

    // A create without a name reaches the command, whose refusal comes back as it is.
    for (const auto& c : {std::make_pair("createPl", "create-playlist"), std::make_pair("createCl", "create-collection")}) {
        const HttpReply unnamed = m_pl.set(QString("playlists:/root?action=") + c.first, QVariantHash());
        EXPECT_EQ(unnamed.status, 422) << c.first;
        EXPECT_FALSE(unnamed.errorMessage().isEmpty());
        EXPECT_EQ(unnamed.errorMessage(), m_pl.command(c.second, QVariantHash()).errorMessage()) << c.first;
    }
    // Other actions, or none, are not the root's: nothing is created.
    for (const char* path : {"playlists:/root", "playlists:/root?action=createpl", "playlists:/root?action=play"})
        EXPECT_EQ(m_pl.set(path, J::stringValue("X")).errorName(), "invalidPath") << path;
    EXPECT_EQ(m_pl.rows("playlists:/root").value("rowsCount"), 8);
}

TEST_F(BrowseApi, ACollectionListsItsPlaylistsWithTheShortMenuTitle)
{
    ASSERT_EQ(m_pl.createPlaylist("Road"), 1);
    ASSERT_EQ(m_pl.createPlaylist("City"), 2);
    ASSERT_EQ(m_pl.createCollection("Trips"), 1);
    for (int plid : {1, 2})
        ASSERT_TRUE(J::answeredTrue(m_pl.command("add-to-collection", QVariantHash{{"clid", 1}, {"plid", plid}})));
    const QVariantHash listing = m_pl.rows("playlists:/collection?clid=1");
    EXPECT_EQ(listing.value("title"), "Collection - Trips");
    EXPECT_EQ(listing.value("rowsCount"), 2);
    const QVariantList rows = listing.value("rows").toList();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(J::text(rows.at(0)), J::text(R"({"containerPlayable": true, "path": "playlists:/tracks/2", "title": "City", "type": "container",
        "mediaData": {"metaData": {"playLogicPath": "playlists:/playlogic"}},
        "context": {"title": "Playlist - City", "path": "playlists:/menu/playlist?plid=2&clid=1", "type": "container", "containerType": "contextMenu"}})"));
    EXPECT_EQ(rows.at(1).toHash().value("path"), "playlists:/tracks/1");
    EXPECT_EQ(J::text(m_pl.rows("playlists:/collection?clid=1", "title", 1, 1).value("rows")), J::text(R"([["Road"]])"));

    ASSERT_EQ(m_pl.createCollection("Empty"), 2);
    const QVariantHash empty = m_pl.rows("playlists:/collection?clid=2");
    EXPECT_EQ(empty.value("title"), "Collection - Empty");
    EXPECT_EQ(empty.value("rowsCount"), 0);
    EXPECT_EQ(J::text(m_pl.rows("playlists:/collection?clid=9", "title").value("rows")), "[]");
}

TEST_F(BrowseApi, TitlesAreTranslatedInTheContextOfTheirNode)
{
    ASSERT_EQ(m_pl.createPlaylist("Road"), 1);
    ASSERT_EQ(m_pl.createCollection("Trips"), 1);
    ASSERT_TRUE(m_pl.addTracks(1, {"R0"}));
    ASSERT_EQ(m_pl.set("settings:/language", J::stringValue("de")).status, 200);

    const struct
    {
        const char* path;
        const char* title;
        const char* rows;
    } expected[] = {
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
    for (const auto& e : expected) {
        EXPECT_EQ(m_pl.rows(e.path).value("title").toString(), QString::fromUtf8(e.title)) << e.path;
        EXPECT_EQ(J::text(m_pl.titles(e.path)), J::text(e.rows)) << e.path;
    }
    // The context titles built with a translated text are translated too.
    EXPECT_EQ(m_pl.rowList("playlists:/root").value(3).toHash().value("context").toHash().value("title").toString(),
              "Playlist-Kontextmenü - Road");
}

using BrowseApiLargePlaylist = PlaylistsHostTest;

TEST_F(BrowseApiLargePlaylist, APageOfTenThousandEntriesHoldsTheRowsAskedForAndTheWholeCount)
{
    ASSERT_EQ(m_pl.createPlaylist("Big"), 1);
    ASSERT_TRUE(m_pl.addTracks(1, J::numbered("T", 10000)));

    const QVariantHash page = m_pl.rows("playlists:/tracks/1", "title,value,id,context", 9000, 9049);
    EXPECT_EQ(page.value("title"), "Playlist - Big");
    EXPECT_EQ(page.value("rowsCount"), 10000);
    const QVariantList rows = page.value("rows").toList();
    ASSERT_EQ(rows.size(), 50);
    // Each track opens its menu with its playlist, item and position.
    EXPECT_EQ(J::text(rows.first()), J::text(R"(["T9000", {"type": "i32_", "i32_": 9000}, "9001",
        {"title": "Playlist", "type": "container", "containerType": "contextMenu",
         "path": "playlists:/menu/track?action=cmnode&plid=1&itemid=9001&seqnum=9000"}])"));
    EXPECT_EQ(J::text(rows.last().toList().mid(0, 2)), J::text(R"(["T9049", {"type": "i32_", "i32_": 9049}])"));

    // Past the end: the rows up to the end and the true count.
    const QVariantHash end = m_pl.rows("playlists:/tracks/1", "title", 9990, 10200);
    EXPECT_EQ(end.value("rowsCount"), 10000);
    EXPECT_EQ(end.value("rows").toList().size(), 10);
    EXPECT_EQ(end.value("rows").toList().last().toList().value(0), "T9999");

    // Any range reaches the list, which clamps it: a negative start reads
    // from 0; a built list answers a start past the end with the end row.
    const auto titles = [&](const char* path, int from, int to) {
        QStringList result;
        for (const QVariant& row : m_pl.rows(path, "title", from, to).value("rows").toList())
            result.append(row.toList().value(0).toString());
        return result;
    };
    EXPECT_EQ(titles("playlists:/tracks/1", -5, 2), QStringList({"T0", "T1", "T2"}));
    EXPECT_EQ(titles("playlists:/root", 4, 2), QStringList({"Create New Playlist"}));
    const QStringList all = titles("playlists:/tracks/1", -5, 20000);
    EXPECT_EQ(all.size(), 10000);
    EXPECT_EQ(all.value(9999), "T9999");

    // Rows read, then read again after an entry before them went: each shows its new position.
    EXPECT_EQ(m_pl.rows("playlists:/tracks/1", "title", 9000, 9001).value("rows").toList().size(), 2);
    ASSERT_TRUE(J::answeredTrue(m_pl.command("remove-items", R"({"plid": 1, "items": [0]})")));
    const QVariantList moved = m_pl.rows("playlists:/tracks/1", "title,value,context", 9000, 9000).value("rows").toList();
    EXPECT_EQ(J::text(moved.value(0)), J::text(R"(["T9001", {"type": "i32_", "i32_": 9000},
        {"title": "Playlist", "type": "container", "containerType": "contextMenu",
         "path": "playlists:/menu/track?action=cmnode&plid=1&itemid=9002&seqnum=9000"}])"));
}

} // namespace

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

} // namespace
