#include "BrowseTreeClient.h"
#include "HostProcess.h"

#include <QDeadlineTimer>
#include <QRegularExpression>
#include <QThread>

#include <gtest/gtest.h>

namespace {

using J = BrowseTreeClient;

// A success answer that tells the client to close the menu at menuPath.
::testing::AssertionResult closes(const HttpReply& reply, const char* menuPath)
{
    if (reply.status != 200)
        return ::testing::AssertionFailure() << reply.status << " " << reply.body.constData();
    const QVariantHash answer = reply.json().toHash();
    const std::string events = J::text(answer.value(QStringLiteral("events")));
    if (events != J::text(QVariantList{QVariantHash{{QStringLiteral("path"), QLatin1String(menuPath)},
                                                    {QStringLiteral("rowsType"), QStringLiteral("close")}}}))
        return ::testing::AssertionFailure() << "events: " << events;
    return ::testing::AssertionSuccess();
}

// A success answer passed on as the command gave it: no events, the menu stays open.
::testing::AssertionResult staysOpen(const HttpReply& reply)
{
    if (reply.status != 200)
        return ::testing::AssertionFailure() << reply.status << " " << reply.body.constData();
    const QVariantHash answer = reply.json().toHash();
    if (answer.contains(QStringLiteral("events")) || answer.value(QStringLiteral("xclass")) != QLatin1String("VexaActionReply"))
        return ::testing::AssertionFailure() << reply.body.constData();
    return ::testing::AssertionSuccess();
}

// A refusal that reached the client with the command's own text.
::testing::AssertionResult refusedAs(const HttpReply& viaMenu, const HttpReply& direct)
{
    if (viaMenu.status != 422 || direct.status != 422)
        return ::testing::AssertionFailure() << viaMenu.status << " " << viaMenu.body.constData() << " / " << direct.status;
    if (viaMenu.errorMessage().isEmpty() || viaMenu.errorMessage() != direct.errorMessage())
        return ::testing::AssertionFailure() << viaMenu.errorMessage().toStdString() << " / " << direct.errorMessage().toStdString();
    return ::testing::AssertionSuccess();
}

QString rowPathAt(const QVariantList& rows, int index)
{
    return rows.value(index).toHash().value(QStringLiteral("path")).toString();
}

class MenuApi : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QString error;
        ASSERT_TRUE(m_host.start(&error)) << error.toStdString();
    }

    BrowseTreeClient tree() const { return BrowseTreeClient(m_host); }
    HttpReply set(const QString& path, const QVariant& value = QVariant::fromValue(nullptr)) const { return tree().setData(path, value); }
    HttpReply command(const char* path, const char* value) const { return tree().setData(QLatin1String(path), J::json(value)); }
    QStringList titles(const QString& path) const { return tree().titles(path); }
    // "playing <title>" once the player plays the track titled title (it
    // starts asynchronously); otherwise the state and track it last showed.
    std::string playing(const char* title) const
    {
        const QString wanted = QStringLiteral("playing ") + QLatin1String(title);
        QString seen;
        QDeadlineTimer deadline(5000);
        do {
            const QVariantHash status =
                tree().api().data(QStringLiteral("player:/status")).json().toHash().value(QStringLiteral("value")).toHash();
            seen = status.value(QStringLiteral("state")).toString() + QLatin1Char(' ')
                + status.value(QStringLiteral("track")).toHash().value(QStringLiteral("title")).toString();
            if (seen == wanted)
                break;
            QThread::msleep(10);
        } while (!deadline.hasExpired());
        return seen.toStdString();
    }
    // The context path of the track row at seqnum of a list.
    QString trackMenu(const QString& list, int seqnum) const
    {
        return tree().rowList(list, seqnum, seqnum).value(0).toHash().value(QStringLiteral("context")).toHash()
            .value(QStringLiteral("path")).toString();
    }

    // Real time: tracks of 30 s stay current for the whole test.
    HostProcess m_host{{HostProcess::playlistsModule(), QStringLiteral("libvexa_testmod.so")}};
};

TEST_F(MenuApi, EveryMenuIsAContextMenuNode)
{
    for (const char* path : {"playlists:/menu/playlist", "playlists:/menu/track", "playlists:/menu/add-to-playlist",
                             "playlists:/menu/add-mode", "playlists:/menu/add-to-collection", "playlists:/menu/collection",
                             "playlists:/menu/queue"}) {
        EXPECT_EQ(tree().api().data(QLatin1String(path), QStringLiteral("containerType")).json().toHash().value(QStringLiteral("containerType")),
                  QStringLiteral("contextMenu"))
            << path;
    }
}

TEST_F(MenuApi, ThePlaylistMenuOffersItsEntriesWithTheCurrentState)
{
    ASSERT_EQ(tree().createPlaylist(QStringLiteral("Road")), 1);
    ASSERT_EQ(tree().createCollection(QStringLiteral("Trips")), 1);
    const QVariantHash menu = tree().rows(QStringLiteral("playlists:/menu/playlist?plid=1"));
    EXPECT_EQ(menu.value(QStringLiteral("title")).toString().toStdString(), std::string("Playlist Context Menu - Road"));
    EXPECT_EQ(menu.value(QStringLiteral("rowsCount")).toInt(), 9);
    QStringList rows;
    for (const QVariant& row : menu.value(QStringLiteral("rows")).toList())
        rows.append(QString::fromStdString(J::text(row)));
    EXPECT_EQ(J::text(rows), J::text(QVariant(QStringList{
        QString::fromStdString(J::text(R"({"title": "Play", "path": "playlists:/menu/playlist?action=play&plid=1", "type": "action"})")),
        QString::fromStdString(J::text(R"({"title": "Rename", "path": "playlists:/menu/playlist?action=rename&plid=1", "type": "input",
                                          "value": {"type": "string_", "string_": "Road"}, "modifiable": true})")),
        QString::fromStdString(J::text(R"({"title": "Set shuffle mode", "path": "playlists:/menu/playlist?action=shuffle&plid=1&mode=1",
                                          "type": "input", "value": {"type": "bool_", "bool_": false}, "modifiable": true})")),
        QString::fromStdString(J::text(R"({"title": "Set repeat mode", "path": "playlists:/menu/playlist?action=repeat&plid=1&mode=1",
                                          "type": "input", "value": {"type": "bool_", "bool_": false}, "modifiable": true})")),
        QString::fromStdString(J::text(R"({"title": "Merge with playlist", "path": "playlists:/menu/add-to-playlist?action=cmnode&fromplid=1",
                                          "type": "container"})")),
        QString::fromStdString(J::text(R"({"title": "Add to collection", "path": "playlists:/menu/add-to-collection?action=cmnode&plid=1",
                                          "type": "container"})")),
        QString::fromStdString(J::text(R"({"type": "separator"})")),
        QString::fromStdString(J::text(R"({"title": "Clear playlist", "path": "playlists:/menu/playlist?action=clearPl&plid=1", "type": "action"})")),
        QString::fromStdString(J::text(R"({"title": "Delete playlist", "path": "playlists:/menu/playlist?action=delPL&plid=1", "type": "action"})")),
    })));

    // Opened from a collection it can take the playlist out of that collection.
    const QVariantList inCollection = tree().rowList(QStringLiteral("playlists:/menu/playlist?plid=1&clid=1"));
    ASSERT_EQ(inCollection.size(), 10);
    EXPECT_EQ(J::text(inCollection.at(6)), J::text(R"({"title": "Remove from collection - Trips", "type": "action",
        "path": "playlists:/menu/playlist?action=delFromCl&plid=1&clid=1"})"));
    EXPECT_EQ(tree().rowList(QStringLiteral("playlists:/menu/playlist?plid=1&clid=7")).size(), 9);

    // The toggles show the current state and hold its inverse.
    ASSERT_EQ(command("playlists:/set-shuffle", R"({"plid": 1, "mode": 1})").status, 200);
    ASSERT_EQ(command("playlists:/set-repeat", R"({"plid": 1, "mode": 2})").status, 200);
    const QVariantList toggled = tree().rowList(QStringLiteral("playlists:/menu/playlist?plid=1"));
    EXPECT_EQ(J::text(toggled.at(2)), J::text(R"({"title": "Set shuffle mode", "path": "playlists:/menu/playlist?action=shuffle&plid=1&mode=0",
                                                 "type": "input", "value": {"type": "bool_", "bool_": true}, "modifiable": true})"));
    EXPECT_EQ(J::text(toggled.at(3)), J::text(R"({"title": "Set repeat mode", "path": "playlists:/menu/playlist?action=repeat&plid=1&mode=0",
                                                 "type": "input", "value": {"type": "bool_", "bool_": true}, "modifiable": true})"));

    EXPECT_EQ(tree().rows(QStringLiteral("playlists:/menu/playlist?plid=9")).value(QStringLiteral("rowsCount")).toInt(), 0);
}

TEST_F(MenuApi, PlaylistMenuActionsCloseTheMenuUnlessItShowsTheChange)
{
    ASSERT_EQ(tree().createPlaylist(QStringLiteral("Road")), 1);
    ASSERT_TRUE(tree().addTracks(1, {QStringLiteral("R0"), QStringLiteral("R1")}));
    ASSERT_EQ(tree().createCollection(QStringLiteral("Trips")), 1);
    ASSERT_EQ(command("playlists:/add-to-collection", R"({"clid": 1, "plid": 1})").status, 200);
    // Opened from the collection's listing, the menu can take the playlist out of it.
    const QString menu = tree().rowList(QStringLiteral("playlists:/collection?clid=1")).value(0).toHash()
                             .value(QStringLiteral("context")).toHash().value(QStringLiteral("path")).toString();
    ASSERT_EQ(tree().rowList(menu).size(), 10) << menu.toStdString();
    const auto entry = [&](int row) { return rowPathAt(tree().rowList(menu), row); };
    const auto toggleValue = [&](int row) {
        return tree().rowList(menu).value(row).toHash().value(QStringLiteral("value")).toHash().value(QStringLiteral("bool_")).toBool();
    };

    const HttpReply renamed = set(entry(1), J::stringValue(QStringLiteral("Highway")));
    EXPECT_TRUE(staysOpen(renamed));
    EXPECT_EQ(J::text(renamed.json().toHash().value(QStringLiteral("result"))), J::text(R"({"value": {"type": "bool_", "bool_": true}})"));
    EXPECT_EQ(tree().rows(menu).value(QStringLiteral("title")).toString().toStdString(), std::string("Playlist Context Menu - Highway"));

    // Activated, a toggle flips; given a value, it takes that value whatever its path holds.
    EXPECT_TRUE(staysOpen(set(entry(2))));
    EXPECT_TRUE(toggleValue(2));
    EXPECT_TRUE(staysOpen(set(entry(2))));
    EXPECT_FALSE(toggleValue(2));
    EXPECT_TRUE(staysOpen(set(entry(3))));
    EXPECT_TRUE(toggleValue(3));
    EXPECT_FALSE(toggleValue(2)) << "repeat must not touch shuffle";
    EXPECT_TRUE(staysOpen(set(QStringLiteral("playlists:/menu/playlist?action=repeat&plid=1&mode=1"), J::boolValue(false))));
    EXPECT_FALSE(toggleValue(3));
    EXPECT_TRUE(staysOpen(set(QStringLiteral("playlists:/menu/playlist?action=repeat&plid=1&mode=0"), J::boolValue(true))));
    EXPECT_TRUE(toggleValue(3));
    EXPECT_TRUE(staysOpen(set(QStringLiteral("playlists:/menu/playlist?action=shuffle&plid=1&mode=0"), J::boolValue(true))));
    EXPECT_TRUE(toggleValue(2));

    EXPECT_TRUE(closes(set(entry(0)), "playlists:/menu/playlist"));
    EXPECT_EQ(playing("R0"), "playing R0");

    EXPECT_TRUE(closes(set(entry(6)), "playlists:/menu/playlist"));
    EXPECT_TRUE(tree().titles(QStringLiteral("playlists:/collection?clid=1")).isEmpty());

    EXPECT_TRUE(closes(set(entry(8)), "playlists:/menu/playlist"));
    EXPECT_EQ(tree().rows(QStringLiteral("playlists:/tracks/1")).value(QStringLiteral("rowsCount")).toInt(), 0);

    const QString remove = entry(9);
    EXPECT_TRUE(closes(set(remove), "playlists:/menu/playlist"));
    EXPECT_FALSE(tree().titles(QStringLiteral("playlists:/root")).contains(QStringLiteral("Highway")));

    // Refusals reach the client with the command's own text, and close nothing.
    EXPECT_TRUE(refusedAs(set(remove), command("playlists:/delete-playlist", R"({"plid": 1})")));
    EXPECT_TRUE(refusedAs(set(QStringLiteral("playlists:/menu/playlist?action=rename&plid=0"), J::stringValue(QStringLiteral("Q"))),
                          command("playlists:/rename-playlist", R"({"plid": 0, "name": "Q"})")));
    EXPECT_TRUE(refusedAs(set(QStringLiteral("playlists:/menu/playlist?action=play&plid=0")),
                          command("playlists:/play-playlist", R"({"plid": 0})")));
    EXPECT_TRUE(refusedAs(set(QStringLiteral("playlists:/menu/playlist?action=delFromCl&plid=1&clid=1")),
                          command("playlists:/remove-from-collection", R"({"plid": 1, "clid": 1})")));
    EXPECT_EQ(set(QStringLiteral("playlists:/menu/playlist?action=Rename&plid=1"), J::stringValue(QStringLiteral("X"))).errorName(),
              QStringLiteral("invalidPath"));
}

TEST_F(MenuApi, TheTrackMenuMovesByPlidAndRemovesByFromplid)
{
    ASSERT_EQ(tree().createPlaylist(QStringLiteral("Road")), 1);
    ASSERT_TRUE(tree().addTracks(1, J::numbered(QStringLiteral("R"), 5)));
    const QString menu = trackMenu(QStringLiteral("playlists:/tracks/1"), 1);
    const QString itemId = tree().rowList(QStringLiteral("playlists:/tracks/1"), 1, 1).value(0).toHash().value(QStringLiteral("id")).toString();
    const QVariantHash opened = tree().rows(menu);
    EXPECT_EQ(opened.value(QStringLiteral("title")).toString().toStdString(), std::string("Track Context Menu"));
    const QString item = QStringLiteral("playlists%3A%2Fitem%2F") + itemId;
    EXPECT_EQ(J::text(opened.value(QStringLiteral("rows"))), J::text(QStringLiteral(R"([
        {"title": "Add to playqueue", "type": "container", "containerType": "contextMenu",
         "path": "playlists:/menu/add-mode?action=cmnode&fromplid=1&itemid=%1&plid=0"},
        {"title": "Add to playlist", "type": "container", "containerType": "contextMenu",
         "path": "playlists:/menu/add-to-playlist?action=cmnode&fromplid=1&itemid=%1&preparepath=playlists%3A%2Fprepare-items"},
        {"title": "Move track", "type": "input", "value": {"type": "string_", "string_": ""}, "modifiable": true,
         "path": "playlists:/menu/track?action=moveTr&plid=1&from=1"},
        {"title": "Remove track", "type": "action", "path": "playlists:/menu/track?action=removeTr&fromplid=1&seqnum=1"}])")
                                                                          .arg(item).toUtf8().constData()));

    const QVariantList rows = opened.value(QStringLiteral("rows")).toList();
    EXPECT_TRUE(closes(set(rowPathAt(rows, 2), J::stringValue(QStringLiteral("3"))), "playlists:/menu/track"));
    EXPECT_EQ(J::text(titles(QStringLiteral("playlists:/tracks/1"))),
              J::text((QStringList{QStringLiteral("R0"), QStringLiteral("R2"), QStringLiteral("R3"), QStringLiteral("R1"), QStringLiteral("R4")})));

    const QString first = trackMenu(QStringLiteral("playlists:/tracks/1"), 0);
    EXPECT_TRUE(closes(set(rowPathAt(tree().rowList(first), 3)), "playlists:/menu/track"));
    EXPECT_EQ(J::text(titles(QStringLiteral("playlists:/tracks/1"))),
              J::text((QStringList{QStringLiteral("R2"), QStringLiteral("R3"), QStringLiteral("R1"), QStringLiteral("R4")})));

    EXPECT_TRUE(refusedAs(set(rowPathAt(rows, 2), J::stringValue(QStringLiteral("soon"))),
                          command("playlists:/move-items", R"({"plid": 1, "items": [1], "to": -1})")));
    EXPECT_TRUE(refusedAs(set(QStringLiteral("playlists:/menu/track?action=removeTr&plid=1&seqnum=0")),
                          command("playlists:/remove-items", R"({"plid": -1, "items": [0]})")));
    EXPECT_EQ(titles(QStringLiteral("playlists:/tracks/1")).size(), 4);
}

TEST_F(MenuApi, AddingATrackToTheQueueGoesThroughTheInsertPositions)
{
    ASSERT_EQ(tree().createPlaylist(QStringLiteral("Road")), 1);
    ASSERT_TRUE(tree().addTracks(1, J::numbered(QStringLiteral("R"), 3)));
    ASSERT_TRUE(tree().addTracks(0, J::numbered(QStringLiteral("Q"), 3)));
    EXPECT_TRUE(closes(set(QStringLiteral("playlists:/menu/queue?action=playPl&plid=0")), "playlists:/menu/queue"));
    ASSERT_EQ(playing("Q0"), "playing Q0");

    const auto toQueue = [&](int seqnum) { return rowPathAt(tree().rowList(trackMenu(QStringLiteral("playlists:/tracks/1"), seqnum)), 0); };
    const QString chooser = toQueue(1);
    const QVariantHash modes = tree().rows(chooser);
    EXPECT_EQ(modes.value(QStringLiteral("title")).toString().toStdString(), std::string("Playlists"));
    EXPECT_EQ(J::text(modes.value(QStringLiteral("rows"))),
              J::text(QStringLiteral(R"([{"title": "Now", "type": "action", "path": "%1&mode=0"},
                                         {"title": "After current", "type": "action", "path": "%1&mode=1"},
                                         {"title": "Append", "type": "action", "path": "%1&mode=2"}])")
                          .arg(chooser).toUtf8().constData()));

    EXPECT_TRUE(closes(set(rowPathAt(tree().rowList(chooser), 1)), "playlists:/menu/add-mode"));
    EXPECT_TRUE(closes(set(rowPathAt(tree().rowList(toQueue(2)), 2)), "playlists:/menu/add-mode"));
    EXPECT_EQ(J::text(titles(QStringLiteral("playlists:/queue"))),
              J::text((QStringList{QStringLiteral("Q0"), QStringLiteral("R1"), QStringLiteral("Q1"), QStringLiteral("Q2"), QStringLiteral("R2")})));
    EXPECT_TRUE(closes(set(rowPathAt(tree().rowList(toQueue(0)), 0)), "playlists:/menu/add-mode"));
    EXPECT_EQ(playing("R0"), "playing R0");
    EXPECT_EQ(titles(QStringLiteral("playlists:/tracks/1")).size(), 3) << "the source keeps its tracks";

    EXPECT_TRUE(refusedAs(set(chooser + QStringLiteral("&mode=7")),
                          command("playlists:/add-items", R"({"plid": 0, "fromPlid": 1, "mode": 7, "items": ["playlists:/item/1"]})")));
}

TEST_F(MenuApi, ThePlaylistChooserCreatesInPlaceAndLeadsOnToThePositions)
{
    ASSERT_EQ(tree().createPlaylist(QStringLiteral("Road")), 1);
    ASSERT_TRUE(tree().addTracks(1, J::numbered(QStringLiteral("R"), 2)));
    const QString chooser = rowPathAt(tree().rowList(trackMenu(QStringLiteral("playlists:/tracks/1"), 1)), 1);
    const QVariantHash before = tree().rows(chooser);
    EXPECT_EQ(before.value(QStringLiteral("title")).toString().toStdString(), std::string("Playlists"));
    const QVariantList rows = before.value(QStringLiteral("rows")).toList();
    ASSERT_EQ(rows.size(), 3);
    const QString itemParam = QRegularExpression(QStringLiteral("itemid=([^&]+)")).match(chooser).captured(1);
    ASSERT_FALSE(itemParam.isEmpty()) << chooser.toStdString();
    EXPECT_EQ(J::text(rows.at(0)), J::text(QStringLiteral(R"({"title": "Create new playlist", "type": "input", "modifiable": true,
        "value": {"type": "string_", "string_": ""}, "path": "playlists:/menu/add-to-playlist?itemid=%1&action=createPl"})")
                                               .arg(itemParam).toUtf8().constData()));
    EXPECT_EQ(J::text(rows.at(1)), J::text(R"({"type": "separator"})"));
    const QString modes = QString(chooser).replace(QStringLiteral("add-to-playlist"), QStringLiteral("add-mode")) + QStringLiteral("&plid=1");
    EXPECT_EQ(J::text(rows.at(2)), J::text(QStringLiteral(R"({"title": "Road", "type": "container", "containerType": "contextMenu",
        "containerPlayable": true, "path": "%1"})").arg(modes).toUtf8().constData()));

    const HttpReply created = set(rowPathAt(rows, 0), J::stringValue(QStringLiteral("Fresh")));
    EXPECT_TRUE(staysOpen(created));
    EXPECT_EQ(J::text(created.json().toHash().value(QStringLiteral("result"))), J::text(R"({"value": {"type": "i32_", "i32_": 2}})"));
    EXPECT_TRUE(refusedAs(set(rowPathAt(rows, 0), J::stringValue(QString())), command("playlists:/create-playlist", R"({"name": ""})")));

    const QVariantList after = tree().rowList(chooser);
    ASSERT_EQ(after.size(), 4);
    EXPECT_EQ(after.at(2).toHash().value(QStringLiteral("title")).toString().toStdString(), std::string("Fresh"));
    EXPECT_TRUE(closes(set(rowPathAt(tree().rowList(rowPathAt(after, 2)), 2)), "playlists:/menu/add-mode"));
    EXPECT_EQ(J::text(titles(QStringLiteral("playlists:/tracks/2"))), J::text(QStringList{QStringLiteral("R1")}));
    EXPECT_EQ(titles(QStringLiteral("playlists:/tracks/1")).size(), 2);
}

TEST_F(MenuApi, MergingAddsTheWholeSourceThroughBothChoosers)
{
    ASSERT_EQ(tree().createPlaylist(QStringLiteral("Road")), 1);
    ASSERT_EQ(tree().createPlaylist(QStringLiteral("Target")), 2);
    ASSERT_TRUE(tree().addTracks(1, J::numbered(QStringLiteral("R"), 3)));
    ASSERT_TRUE(tree().addTracks(2, {QStringLiteral("T0")}));
    ASSERT_TRUE(tree().addTracks(0, J::numbered(QStringLiteral("Q"), 2)));
    // Menu entry, chooser row for the target, position row "Append".
    const auto merge = [&](const QString& menu, int mergeRow) {
        const QString chooser = rowPathAt(tree().rowList(menu), mergeRow);
        return set(rowPathAt(tree().rowList(tree().rowPath(chooser, QStringLiteral("Target"))), 2));
    };

    EXPECT_TRUE(closes(merge(QStringLiteral("playlists:/menu/playlist?plid=1"), 4), "playlists:/menu/add-mode"));
    EXPECT_EQ(J::text(titles(QStringLiteral("playlists:/tracks/2"))),
              J::text((QStringList{QStringLiteral("T0"), QStringLiteral("R0"), QStringLiteral("R1"), QStringLiteral("R2")})));

    const QVariantHash queueMenu = tree().rows(QStringLiteral("playlists:/menu/queue?plid=0"));
    EXPECT_EQ(J::text(queueMenu.value(QStringLiteral("rows")).toList().value(1)),
              J::text(R"({"title": "Merge with playlist", "type": "container",
                          "path": "playlists:/menu/add-to-playlist?action=cmnode&plid=0&fromplid=0"})"));
    EXPECT_TRUE(closes(merge(QStringLiteral("playlists:/menu/queue?plid=0"), 1), "playlists:/menu/add-mode"));
    EXPECT_EQ(J::text(titles(QStringLiteral("playlists:/tracks/2")).mid(4)), J::text((QStringList{QStringLiteral("Q0"), QStringLiteral("Q1")})));
    // The queue cannot be deleted: merging it copies, and nothing tries to delete it.
    EXPECT_EQ(J::text(titles(QStringLiteral("playlists:/queue"))), J::text((QStringList{QStringLiteral("Q0"), QStringLiteral("Q1")})));
    EXPECT_FALSE(m_host.log().contains("Error deleting PlayList")) << m_host.log().toStdString();
}

TEST_F(MenuApi, TheCollectionChooserKeepsItsCreateOpenAndTheCollectionMenuDeletes)
{
    ASSERT_EQ(tree().createPlaylist(QStringLiteral("Road")), 1);
    ASSERT_EQ(tree().createCollection(QStringLiteral("Trips")), 1);
    const QString chooser = rowPathAt(tree().rowList(QStringLiteral("playlists:/menu/playlist?plid=1")), 5);
    const QVariantHash opened = tree().rows(chooser);
    EXPECT_EQ(opened.value(QStringLiteral("title")).toString().toStdString(), std::string("Add playlist to collection"));
    EXPECT_EQ(J::text(opened.value(QStringLiteral("rows"))), J::text(R"([
        {"title": "Create new collection", "type": "input", "modifiable": true, "value": {"type": "string_", "string_": ""},
         "path": "playlists:/menu/add-to-collection?action=createCl&plid=1"},
        {"type": "separator"},
        {"title": "Trips", "type": "action", "path": "playlists:/menu/add-to-collection?action=addItem&plid=1&clid=1"}])"));

    const HttpReply created = set(rowPathAt(opened.value(QStringLiteral("rows")).toList(), 0), J::stringValue(QStringLiteral("Evening")));
    EXPECT_TRUE(staysOpen(created));
    EXPECT_EQ(J::text(created.json().toHash().value(QStringLiteral("result"))), J::text(R"({"value": {"type": "i32_", "i32_": 2}})"));
    EXPECT_EQ(J::text(titles(chooser).mid(2)), J::text((QStringList{QStringLiteral("Evening"), QStringLiteral("Trips")})));

    const QString addToTrips = tree().rowPath(chooser, QStringLiteral("Trips"));
    EXPECT_TRUE(closes(set(addToTrips), "playlists:/menu/add-to-collection"));
    EXPECT_EQ(J::text(titles(QStringLiteral("playlists:/collection?clid=1"))), J::text(QStringList{QStringLiteral("Road")}));
    EXPECT_EQ(J::text(titles(QStringLiteral("playlists:/collection?clid=2"))), J::text(QStringList()));
    EXPECT_TRUE(refusedAs(set(QStringLiteral("playlists:/menu/add-to-collection?action=addItem&plid=5&clid=1")),
                          command("playlists:/add-to-collection", R"({"plid": 5, "clid": 1})")));

    const QVariantHash menu = tree().rows(QStringLiteral("playlists:/menu/collection?clid=1"));
    EXPECT_EQ(menu.value(QStringLiteral("title")).toString().toStdString(), std::string("Collection Context Menu - Trips"));
    EXPECT_EQ(J::text(menu.value(QStringLiteral("rows"))),
              J::text(R"([{"title": "Delete collection", "type": "action", "path": "playlists:/menu/collection?action=delete&clid=1"}])"));
    const QString remove = rowPathAt(menu.value(QStringLiteral("rows")).toList(), 0);
    EXPECT_TRUE(closes(set(remove), "playlists:/menu/collection"));
    EXPECT_FALSE(titles(QStringLiteral("playlists:/root")).contains(QStringLiteral("Trips")));
    EXPECT_TRUE(titles(QStringLiteral("playlists:/root")).contains(QStringLiteral("Evening")));
    EXPECT_TRUE(refusedAs(set(remove), command("playlists:/delete-collection", R"({"clid": 1})")));
}

TEST_F(MenuApi, TheQueueMenuPlaysAndClearsTheQueue)
{
    const QVariantHash menu = tree().rows(QStringLiteral("playlists:/menu/queue?plid=0"));
    EXPECT_EQ(menu.value(QStringLiteral("title")).toString().toStdString(), std::string("PlayQueue Context Menu"));
    EXPECT_EQ(J::text(menu.value(QStringLiteral("rows"))), J::text(R"([
        {"title": "Play", "type": "action", "path": "playlists:/menu/queue?action=playPl&plid=0"},
        {"title": "Merge with playlist", "type": "container", "path": "playlists:/menu/add-to-playlist?action=cmnode&plid=0&fromplid=0"},
        {"type": "separator"},
        {"title": "Clear", "type": "action", "path": "playlists:/menu/queue?action=clearPl&plid=0"}])"));
    const QVariantList rows = menu.value(QStringLiteral("rows")).toList();

    EXPECT_TRUE(refusedAs(set(rowPathAt(rows, 0)), command("playlists:/play-playlist", R"({"plid": 0})")));
    ASSERT_TRUE(tree().addTracks(0, J::numbered(QStringLiteral("Q"), 2)));
    EXPECT_TRUE(closes(set(rowPathAt(rows, 0)), "playlists:/menu/queue"));
    EXPECT_EQ(playing("Q0"), "playing Q0");
    // Queue tracks open their menu on the queue.
    EXPECT_TRUE(closes(set(rowPathAt(tree().rowList(trackMenu(QStringLiteral("playlists:/queue"), 1)), 3)), "playlists:/menu/track"));
    EXPECT_EQ(J::text(titles(QStringLiteral("playlists:/queue"))), J::text(QStringList{QStringLiteral("Q0")}));
    EXPECT_TRUE(closes(set(rowPathAt(rows, 3)), "playlists:/menu/queue"));
    EXPECT_TRUE(titles(QStringLiteral("playlists:/queue")).isEmpty());
    EXPECT_EQ(set(QStringLiteral("playlists:/menu/queue?action=play&plid=0")).errorName(), QStringLiteral("invalidPath"));
}

} // namespace
