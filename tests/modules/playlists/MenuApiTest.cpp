#include "PlaylistsApi.h"

#include <QRegularExpression>

namespace {

using J = PlaylistsApi;

// A success answer that tells the client to close the menu at menuPath.
::testing::AssertionResult closes(const HttpReply& reply, const char* menuPath)
{
    const std::string events = J::text(reply.json().toHash().value("events"));
    if (reply.status != 200 || events != J::text(QVariantList{QVariantHash{{"path", menuPath}, {"rowsType", "close"}}}))
        return ::testing::AssertionFailure() << reply.status << " " << reply.body.constData();
    return ::testing::AssertionSuccess();
}

// A success answer passed on as the command gave it, with the result given:
// no events, the menu stays open.
::testing::AssertionResult staysOpen(const HttpReply& reply, const char* result = R"({"type": "bool_", "bool_": true})")
{
    if (!J::answered(reply, J::json(result).toHash()))
        return ::testing::AssertionFailure() << reply.status << " " << reply.body.constData();
    return ::testing::AssertionSuccess();
}

// A refusal that reached the client with the command's own text.
::testing::AssertionResult refusedAs(const HttpReply& viaMenu, const HttpReply& direct)
{
    if (viaMenu.status != 422 || direct.status != 422 || viaMenu.errorMessage().isEmpty() || viaMenu.errorMessage() != direct.errorMessage())
        return ::testing::AssertionFailure() << viaMenu.status << " " << viaMenu.body.constData() << " / " << direct.body.constData();
    return ::testing::AssertionSuccess();
}

// Real time: tracks of 30 s stay current for the whole test.
class MenuApi : public PlaylistsHostTest
{
protected:
    MenuApi() : PlaylistsHostTest(QStringList()) {}

    HttpReply command(const char* name, const char* value) const { return m_pl.command(name, value); }
    // "playing <title>" once the player plays the track titled title (it
    // starts asynchronously); otherwise the state and track it last showed.
    std::string playing(const char* title) const
    {
        QString seen;
        m_pl.api().waitForPlayer([&](const QVariantHash& status) {
            seen = status.value("state").toString() + ' ' + status.value("track").toHash().value("title").toString();
            return seen == "playing " + QString(title);
        });
        return seen.toStdString();
    }
    // The context path of the track row at seqnum of a list.
    QString trackMenu(const QString& list, int seqnum) const
    {
        return m_pl.rowList(list, seqnum, seqnum).value(0).toHash().value("context").toHash().value("path").toString();
    }
    QString rowsText(const QString& path) const { return QString::fromStdString(J::text(m_pl.rows(path).value("rows"))); }
    static QString expected(const QString& json) { return QString::fromStdString(J::text(json.toUtf8().constData())); }
};

TEST_F(MenuApi, EveryMenuIsAContextMenuNode)
{
    for (const char* path : {"playlists:/menu/playlist", "playlists:/menu/track", "playlists:/menu/add-to-playlist", "playlists:/menu/add-mode",
                             "playlists:/menu/add-to-collection", "playlists:/menu/collection", "playlists:/menu/queue"})
        EXPECT_EQ(m_pl.api().data(path, "containerType").json().toHash().value("containerType"), "contextMenu") << path;
}

TEST_F(MenuApi, ThePlaylistMenuOffersItsEntriesWithTheCurrentState)
{
    ASSERT_EQ(m_pl.createPlaylist("Road"), 1);
    ASSERT_EQ(m_pl.createCollection("Trips"), 1);
    const QVariantHash menu = m_pl.rows("playlists:/menu/playlist?plid=1");
    EXPECT_EQ(menu.value("title"), "Playlist Context Menu - Road");
    EXPECT_EQ(menu.value("rowsCount"), 9);
    EXPECT_EQ(rowsText("playlists:/menu/playlist?plid=1"), expected(R"([
        {"title": "Play", "path": "playlists:/menu/playlist?action=play&plid=1", "type": "action"},
        {"title": "Rename", "path": "playlists:/menu/playlist?action=rename&plid=1", "type": "input",
         "value": {"type": "string_", "string_": "Road"}, "modifiable": true},
        {"title": "Set shuffle mode", "path": "playlists:/menu/playlist?action=shuffle&plid=1&mode=1",
         "type": "input", "value": {"type": "bool_", "bool_": false}, "modifiable": true},
        {"title": "Set repeat mode", "path": "playlists:/menu/playlist?action=repeat&plid=1&mode=1",
         "type": "input", "value": {"type": "bool_", "bool_": false}, "modifiable": true},
        {"title": "Merge with playlist", "path": "playlists:/menu/add-to-playlist?action=cmnode&fromplid=1", "type": "container"},
        {"title": "Add to collection", "path": "playlists:/menu/add-to-collection?action=cmnode&plid=1", "type": "container"},
        {"type": "separator"},
        {"title": "Clear playlist", "path": "playlists:/menu/playlist?action=clearPl&plid=1", "type": "action"},
        {"title": "Delete playlist", "path": "playlists:/menu/playlist?action=delPL&plid=1", "type": "action"}])"));

    // Opened from a collection it can take the playlist out of that collection.
    const QVariantList inCollection = m_pl.rowList("playlists:/menu/playlist?plid=1&clid=1");
    ASSERT_EQ(inCollection.size(), 10);
    EXPECT_EQ(J::text(inCollection.at(6)), J::text(R"({"title": "Remove from collection - Trips", "type": "action",
        "path": "playlists:/menu/playlist?action=delFromCl&plid=1&clid=1"})"));
    EXPECT_EQ(m_pl.rowList("playlists:/menu/playlist?plid=1&clid=7").size(), 9);

    // The toggles show the current state and hold its inverse.
    ASSERT_EQ(command("set-shuffle", R"({"plid": 1, "mode": 1})").status, 200);
    ASSERT_EQ(command("set-repeat", R"({"plid": 1, "mode": 2})").status, 200);
    const QVariantList toggled = m_pl.rowList("playlists:/menu/playlist?plid=1");
    EXPECT_EQ(J::text(toggled.mid(2, 2)), J::text(R"([
        {"title": "Set shuffle mode", "path": "playlists:/menu/playlist?action=shuffle&plid=1&mode=0",
         "type": "input", "value": {"type": "bool_", "bool_": true}, "modifiable": true},
        {"title": "Set repeat mode", "path": "playlists:/menu/playlist?action=repeat&plid=1&mode=0",
         "type": "input", "value": {"type": "bool_", "bool_": true}, "modifiable": true}])"));
    EXPECT_EQ(m_pl.rows("playlists:/menu/playlist?plid=9").value("rowsCount"), 0);
}

TEST_F(MenuApi, PlaylistMenuActionsCloseTheMenuUnlessItShowsTheChange)
{
    ASSERT_EQ(m_pl.createPlaylist("Road"), 1);
    ASSERT_TRUE(m_pl.addTracks(1, {"R0", "R1"}));
    ASSERT_EQ(m_pl.createCollection("Trips"), 1);
    ASSERT_EQ(command("add-to-collection", R"({"clid": 1, "plid": 1})").status, 200);
    // Opened from the collection's listing, the menu can take the playlist out of it.
    const QString menu = m_pl.rowList("playlists:/collection?clid=1").value(0).toHash().value("context").toHash().value("path").toString();
    ASSERT_EQ(m_pl.rowList(menu).size(), 10) << menu.toStdString();
    const auto entry = [&](int row) { return m_pl.rowPath(menu, row); };
    const auto toggleValue = [&](int row) { return m_pl.rowList(menu).value(row).toHash().value("value").toHash().value("bool_").toBool(); };

    EXPECT_TRUE(staysOpen(m_pl.set(entry(1), J::stringValue("Highway"))));
    EXPECT_EQ(m_pl.rows(menu).value("title"), "Playlist Context Menu - Highway");

    // Activated, a toggle flips; given a value, it takes that value whatever its path holds.
    EXPECT_TRUE(staysOpen(m_pl.set(entry(2))));
    EXPECT_TRUE(toggleValue(2));
    EXPECT_TRUE(staysOpen(m_pl.set(entry(2))));
    EXPECT_FALSE(toggleValue(2));
    EXPECT_TRUE(staysOpen(m_pl.set(entry(3))));
    EXPECT_TRUE(toggleValue(3));
    EXPECT_FALSE(toggleValue(2)) << "repeat must not touch shuffle";
    EXPECT_TRUE(staysOpen(m_pl.set("playlists:/menu/playlist?action=repeat&plid=1&mode=1", J::boolValue(false))));
    EXPECT_FALSE(toggleValue(3));
    EXPECT_TRUE(staysOpen(m_pl.set("playlists:/menu/playlist?action=repeat&plid=1&mode=0", J::boolValue(true))));
    EXPECT_TRUE(toggleValue(3));
    EXPECT_TRUE(staysOpen(m_pl.set("playlists:/menu/playlist?action=shuffle&plid=1&mode=0", J::boolValue(true))));
    EXPECT_TRUE(toggleValue(2));

    EXPECT_TRUE(closes(m_pl.set(entry(0)), "playlists:/menu/playlist"));
    EXPECT_EQ(playing("R0"), "playing R0");
    EXPECT_TRUE(closes(m_pl.set(entry(6)), "playlists:/menu/playlist"));
    EXPECT_TRUE(m_pl.titles("playlists:/collection?clid=1").isEmpty());
    EXPECT_TRUE(closes(m_pl.set(entry(8)), "playlists:/menu/playlist"));
    EXPECT_EQ(m_pl.rows("playlists:/tracks/1").value("rowsCount"), 0);
    const QString remove = entry(9);
    EXPECT_TRUE(closes(m_pl.set(remove), "playlists:/menu/playlist"));
    EXPECT_FALSE(m_pl.titles("playlists:/root").contains("Highway"));

    // Refusals reach the client with the command's own text, and close nothing.
    EXPECT_TRUE(refusedAs(m_pl.set(remove), command("delete-playlist", R"({"plid": 1})")));
    EXPECT_TRUE(refusedAs(m_pl.set("playlists:/menu/playlist?action=rename&plid=0", J::stringValue("Q")),
                          command("rename-playlist", R"({"plid": 0, "name": "Q"})")));
    EXPECT_TRUE(refusedAs(m_pl.set("playlists:/menu/playlist?action=play&plid=0"), command("play-playlist", R"({"plid": 0})")));
    EXPECT_TRUE(refusedAs(m_pl.set("playlists:/menu/playlist?action=delFromCl&plid=1&clid=1"),
                          command("remove-from-collection", R"({"plid": 1, "clid": 1})")));
    EXPECT_EQ(m_pl.set("playlists:/menu/playlist?action=Rename&plid=1", J::stringValue("X")).errorName(), "invalidPath");
}

TEST_F(MenuApi, TheTrackMenuMovesByPlidAndRemovesByFromplid)
{
    ASSERT_EQ(m_pl.createPlaylist("Road"), 1);
    ASSERT_TRUE(m_pl.addTracks(1, J::numbered("R", 5)));
    const QString menu = trackMenu("playlists:/tracks/1", 1);
    const QString itemId = m_pl.rowList("playlists:/tracks/1", 1, 1).value(0).toHash().value("id").toString();
    EXPECT_EQ(m_pl.rows(menu).value("title"), "Track Context Menu");
    EXPECT_EQ(rowsText(menu), expected(QString(R"([
        {"title": "Add to playqueue", "type": "container", "containerType": "contextMenu",
         "path": "playlists:/menu/add-mode?action=cmnode&fromplid=1&itemid=%1&plid=0"},
        {"title": "Add to playlist", "type": "container", "containerType": "contextMenu",
         "path": "playlists:/menu/add-to-playlist?action=cmnode&fromplid=1&itemid=%1&preparepath=playlists%3A%2Fprepare-items"},
        {"title": "Move track", "type": "input", "value": {"type": "string_", "string_": ""}, "modifiable": true,
         "path": "playlists:/menu/track?action=moveTr&plid=1&from=1"},
        {"title": "Remove track", "type": "action", "path": "playlists:/menu/track?action=removeTr&fromplid=1&seqnum=1"}])")
                                          .arg("playlists%3A%2Fitem%2F" + itemId)));

    const QString move = m_pl.rowPath(menu, 2);
    EXPECT_TRUE(closes(m_pl.set(move, J::stringValue("3")), "playlists:/menu/track"));
    EXPECT_EQ(m_pl.titles("playlists:/tracks/1"), QStringList({"R0", "R2", "R3", "R1", "R4"}));
    EXPECT_TRUE(closes(m_pl.set(m_pl.rowPath(trackMenu("playlists:/tracks/1", 0), 3)), "playlists:/menu/track"));
    EXPECT_EQ(m_pl.titles("playlists:/tracks/1"), QStringList({"R2", "R3", "R1", "R4"}));

    EXPECT_TRUE(refusedAs(m_pl.set(move, J::stringValue("soon")), command("move-items", R"({"plid": 1, "items": [1], "to": -1})")));
    EXPECT_TRUE(refusedAs(m_pl.set("playlists:/menu/track?action=removeTr&plid=1&seqnum=0"),
                          command("remove-items", R"({"plid": -1, "items": [0]})")));
    EXPECT_EQ(m_pl.titles("playlists:/tracks/1").size(), 4);
}

TEST_F(MenuApi, AddingATrackToTheQueueGoesThroughTheInsertPositions)
{
    ASSERT_EQ(m_pl.createPlaylist("Road"), 1);
    ASSERT_TRUE(m_pl.addTracks(1, J::numbered("R", 3)));
    ASSERT_TRUE(m_pl.addTracks(0, J::numbered("Q", 3)));
    EXPECT_TRUE(closes(m_pl.set("playlists:/menu/queue?action=playPl&plid=0"), "playlists:/menu/queue"));
    ASSERT_EQ(playing("Q0"), "playing Q0");

    const auto toQueue = [&](int seqnum) { return m_pl.rowPath(trackMenu("playlists:/tracks/1", seqnum), 0); };
    const QString chooser = toQueue(1);
    EXPECT_EQ(m_pl.rows(chooser).value("title"), "Playlists");
    EXPECT_EQ(rowsText(chooser), expected(QString(R"([{"title": "Now", "type": "action", "path": "%1&mode=0"},
                                                      {"title": "After current", "type": "action", "path": "%1&mode=1"},
                                                      {"title": "Append", "type": "action", "path": "%1&mode=2"}])")
                                              .arg(chooser)));

    EXPECT_TRUE(closes(m_pl.set(m_pl.rowPath(chooser, 1)), "playlists:/menu/add-mode"));
    EXPECT_TRUE(closes(m_pl.set(m_pl.rowPath(toQueue(2), 2)), "playlists:/menu/add-mode"));
    EXPECT_EQ(m_pl.titles("playlists:/queue"), QStringList({"Q0", "R1", "Q1", "Q2", "R2"}));
    EXPECT_TRUE(closes(m_pl.set(m_pl.rowPath(toQueue(0), 0)), "playlists:/menu/add-mode"));
    EXPECT_EQ(playing("R0"), "playing R0");
    EXPECT_EQ(m_pl.titles("playlists:/tracks/1").size(), 3) << "the source keeps its tracks";

    EXPECT_TRUE(refusedAs(m_pl.set(chooser + "&mode=7"),
                          command("add-items", R"({"plid": 0, "fromPlid": 1, "mode": 7, "items": ["playlists:/item/1"]})")));
}

TEST_F(MenuApi, ThePlaylistChooserCreatesInPlaceAndLeadsOnToThePositions)
{
    ASSERT_EQ(m_pl.createPlaylist("Road"), 1);
    ASSERT_TRUE(m_pl.addTracks(1, J::numbered("R", 2)));
    const QString chooser = m_pl.rowPath(trackMenu("playlists:/tracks/1", 1), 1);
    EXPECT_EQ(m_pl.rows(chooser).value("title"), "Playlists");
    const QString itemParam = QRegularExpression("itemid=([^&]+)").match(chooser).captured(1);
    ASSERT_FALSE(itemParam.isEmpty()) << chooser.toStdString();
    const QString modes = QString(chooser).replace("add-to-playlist", "add-mode") + "&plid=1";
    EXPECT_EQ(rowsText(chooser), expected(QString(R"([
        {"title": "Create new playlist", "type": "input", "modifiable": true, "value": {"type": "string_", "string_": ""},
         "path": "playlists:/menu/add-to-playlist?itemid=%1&action=createPl"},
        {"type": "separator"},
        {"title": "Road", "type": "container", "containerType": "contextMenu", "containerPlayable": true, "path": "%2"}])")
                                              .arg(itemParam, modes)));

    const QString create = m_pl.rowPath(chooser, 0);
    EXPECT_TRUE(staysOpen(m_pl.set(create, J::stringValue("Fresh")), R"({"type": "i32_", "i32_": 2})"));
    EXPECT_TRUE(refusedAs(m_pl.set(create, J::stringValue(QString())), command("create-playlist", R"({"name": ""})")));
    ASSERT_EQ(m_pl.titles(chooser).size(), 4);
    EXPECT_EQ(m_pl.titles(chooser).at(2), "Fresh");
    EXPECT_TRUE(closes(m_pl.set(m_pl.rowPath(m_pl.rowPath(chooser, 2), 2)), "playlists:/menu/add-mode"));
    EXPECT_EQ(m_pl.titles("playlists:/tracks/2"), QStringList{"R1"});
    EXPECT_EQ(m_pl.titles("playlists:/tracks/1").size(), 2);
}

TEST_F(MenuApi, MergingAddsTheWholeSourceThroughBothChoosers)
{
    ASSERT_EQ(m_pl.createPlaylist("Road"), 1);
    ASSERT_EQ(m_pl.createPlaylist("Target"), 2);
    ASSERT_TRUE(m_pl.addTracks(1, J::numbered("R", 3)));
    ASSERT_TRUE(m_pl.addTracks(2, {"T0"}));
    ASSERT_TRUE(m_pl.addTracks(0, J::numbered("Q", 2)));
    // Menu entry, chooser row for the target, position row "Append".
    const auto merge = [&](const QString& menu, int mergeRow) {
        return m_pl.set(m_pl.rowPath(m_pl.rowPath(m_pl.rowPath(menu, mergeRow), QString("Target")), 2));
    };

    EXPECT_TRUE(closes(merge("playlists:/menu/playlist?plid=1", 4), "playlists:/menu/add-mode"));
    EXPECT_EQ(m_pl.titles("playlists:/tracks/2"), QStringList({"T0", "R0", "R1", "R2"}));
    EXPECT_EQ(J::text(m_pl.rowList("playlists:/menu/queue?plid=0").value(1)),
              J::text(R"({"title": "Merge with playlist", "type": "container",
                          "path": "playlists:/menu/add-to-playlist?action=cmnode&plid=0&fromplid=0"})"));
    EXPECT_TRUE(closes(merge("playlists:/menu/queue?plid=0", 1), "playlists:/menu/add-mode"));
    EXPECT_EQ(m_pl.titles("playlists:/tracks/2").mid(4), QStringList({"Q0", "Q1"}));
    // The queue cannot be deleted: merging it copies, and nothing tries to delete it.
    EXPECT_EQ(m_pl.titles("playlists:/queue"), QStringList({"Q0", "Q1"}));
    EXPECT_FALSE(m_host.log().contains("Error deleting PlayList")) << m_host.log().toStdString();
}

TEST_F(MenuApi, TheCollectionChooserKeepsItsCreateOpenAndTheCollectionMenuDeletes)
{
    ASSERT_EQ(m_pl.createPlaylist("Road"), 1);
    ASSERT_EQ(m_pl.createCollection("Trips"), 1);
    const QString chooser = m_pl.rowPath("playlists:/menu/playlist?plid=1", 5);
    EXPECT_EQ(m_pl.rows(chooser).value("title"), "Add playlist to collection");
    EXPECT_EQ(rowsText(chooser), expected(R"([
        {"title": "Create new collection", "type": "input", "modifiable": true, "value": {"type": "string_", "string_": ""},
         "path": "playlists:/menu/add-to-collection?action=createCl&plid=1"},
        {"type": "separator"},
        {"title": "Trips", "type": "action", "path": "playlists:/menu/add-to-collection?action=addItem&plid=1&clid=1"}])"));

    EXPECT_TRUE(staysOpen(m_pl.set(m_pl.rowPath(chooser, 0), J::stringValue("Evening")), R"({"type": "i32_", "i32_": 2})"));
    EXPECT_EQ(m_pl.titles(chooser).mid(2), QStringList({"Evening", "Trips"}));
    EXPECT_TRUE(closes(m_pl.set(m_pl.rowPath(chooser, QString("Trips"))), "playlists:/menu/add-to-collection"));
    EXPECT_EQ(m_pl.titles("playlists:/collection?clid=1"), QStringList{"Road"});
    EXPECT_EQ(m_pl.titles("playlists:/collection?clid=2"), QStringList());
    EXPECT_TRUE(refusedAs(m_pl.set("playlists:/menu/add-to-collection?action=addItem&plid=5&clid=1"),
                          command("add-to-collection", R"({"plid": 5, "clid": 1})")));

    EXPECT_EQ(m_pl.rows("playlists:/menu/collection?clid=1").value("title"), "Collection Context Menu - Trips");
    EXPECT_EQ(rowsText("playlists:/menu/collection?clid=1"),
              expected(R"([{"title": "Delete collection", "type": "action", "path": "playlists:/menu/collection?action=delete&clid=1"}])"));
    const QString remove = m_pl.rowPath("playlists:/menu/collection?clid=1", 0);
    EXPECT_TRUE(closes(m_pl.set(remove), "playlists:/menu/collection"));
    EXPECT_FALSE(m_pl.titles("playlists:/root").contains("Trips"));
    EXPECT_TRUE(m_pl.titles("playlists:/root").contains("Evening"));
    EXPECT_TRUE(refusedAs(m_pl.set(remove), command("delete-collection", R"({"clid": 1})")));
}

TEST_F(MenuApi, TheQueueMenuPlaysAndClearsTheQueue)
{
    const QString menu = "playlists:/menu/queue?plid=0";
    EXPECT_EQ(m_pl.rows(menu).value("title"), "PlayQueue Context Menu");
    EXPECT_EQ(rowsText(menu), expected(R"([
        {"title": "Play", "type": "action", "path": "playlists:/menu/queue?action=playPl&plid=0"},
        {"title": "Merge with playlist", "type": "container", "path": "playlists:/menu/add-to-playlist?action=cmnode&plid=0&fromplid=0"},
        {"type": "separator"},
        {"title": "Clear", "type": "action", "path": "playlists:/menu/queue?action=clearPl&plid=0"}])"));
    const QString play = m_pl.rowPath(menu, 0);

    EXPECT_TRUE(refusedAs(m_pl.set(play), command("play-playlist", R"({"plid": 0})")));
    ASSERT_TRUE(m_pl.addTracks(0, J::numbered("Q", 2)));
    EXPECT_TRUE(closes(m_pl.set(play), "playlists:/menu/queue"));
    EXPECT_EQ(playing("Q0"), "playing Q0");
    // Queue tracks open their menu on the queue.
    EXPECT_TRUE(closes(m_pl.set(m_pl.rowPath(trackMenu("playlists:/queue", 1), 3)), "playlists:/menu/track"));
    EXPECT_EQ(m_pl.titles("playlists:/queue"), QStringList{"Q0"});
    EXPECT_TRUE(closes(m_pl.set(m_pl.rowPath(menu, 3)), "playlists:/menu/queue"));
    EXPECT_TRUE(m_pl.titles("playlists:/queue").isEmpty());
    EXPECT_EQ(m_pl.set("playlists:/menu/queue?action=play&plid=0").errorName(), "invalidPath");
}

} // namespace
