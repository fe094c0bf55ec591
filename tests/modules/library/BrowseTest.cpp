#include "LibraryHost.h"

#include <VexaJson.h>

#include <QFile>

namespace {

using Format = MediaFiles::Format;

class LibraryBrowse : public LibraryHostTest
{
protected:
    void SetUp() override
    {
        // File names run against track numbers: the album must follow the tags.
        write("Zed/Second/a.flac", tags("Beta", "Zed", "Second Album", 2, "Rock", 2001));
        write("Zed/Second/b.mp3", tags("Alpha", "Zed", "Second Album", 1, "Rock", 2001), Format::Mp3);
        write("Zed/First/1.ogg", tags("Gamma", "Zed", "First", 1, "Jazz", 1999), Format::Vorbis);
        write("Ärger/x.opus", tags("Über Alles", "Ärger", "Nacht", 1, "Rock"), Format::Opus);
        write("loose.wav", {}, Format::Wav);
        MediaFiles::writeGarbage(m_music.filePath("junk.flac"));
        QFile cut(write("Zed/cut.flac", tags("Cut", "Zed", "Cut")));
        cut.resize(30);
        MediaFiles::writeGarbage(m_music.filePath("notes.txt"));
        start();
    }
};

TEST_F(LibraryBrowse, TheTreeListsInBrowseOrderAndPagesWithTheWholeCount)
{
    EXPECT_EQ(scan(), (QVariantHash{{"state", "idle"}, {"done", 7}, {"total", 7}, {"tracks", 5}, {"skipped", 2}}));
    EXPECT_EQ(titles("library:/root"), (QStringList{"Artists", "Albums", "Genres", "Folders", "All tracks", "Search"}));
    EXPECT_EQ(rowList("library:/root").last().toHash().value("type"), "input");

    EXPECT_EQ(titles("library:/artists"), (QStringList{"Ärger", "Unknown artist", "Zed"}));
    const QString zed = pathOf("library:/artists", "Zed");
    EXPECT_EQ(titles(zed), (QStringList{"First", "Second Album"}));
    EXPECT_EQ(titles(pathOf(zed, "Second Album")), (QStringList{"Alpha", "Beta"}));
    EXPECT_EQ(titles("library:/genres"), (QStringList{"Jazz", "Rock"}));
    EXPECT_EQ(titles(pathOf("library:/genres", "Rock")), (QStringList{"Ärger", "Zed"}));
    EXPECT_EQ(titles("library:/folders"), (QStringList{"Ärger", "Zed", "loose"}));
    EXPECT_EQ(titles(pathOf(pathOf("library:/folders", "Zed"), "Second")), (QStringList{"Beta", "Alpha"}));

    const QVariantHash page = rows("library:/tracks", 1, 2);
    EXPECT_EQ(page.value("rowsCount"), 5);
    EXPECT_EQ(page.value("title"), "All tracks");
    ASSERT_EQ(page.value("rows").toList().size(), 2);
    EXPECT_EQ(page.value("rows").toList().at(0).toHash().value("title"), "Beta");
    EXPECT_EQ(rows("library:/tracks", 4, 99).value("rows").toList().size(), 1);

    // Everything the Playlists module needs to store and play the track.
    const QString second = pathOf(zed, "Second Album");
    QVariantHash alpha = rowList(second).first().toHash();
    const QString id = alpha.value("id").toString();
    // Data on an entry's path answers the roles of its row.
    EXPECT_EQ(api().data("library:/track/" + id).json(), QVariant(alpha));
    EXPECT_EQ(api().data("library:/track/" + id, "title,type").json(), QVariant(QVariantHash{{"title", "Alpha"}, {"type", "audio"}}));
    EXPECT_EQ(api().data(second, "title,path").json(), QVariant(QVariantHash{{"title", "Second Album"}, {"path", second}}));
    EXPECT_TRUE(alpha.take("context").toHash().value("path").toString().startsWith("library:/menu?"));
    const QString uri = MediaFiles::uriOf(m_music.filePath("Zed/Second/b.mp3"));
    EXPECT_EQ(VexaJson::toJson(alpha).toStdString(),
              VexaJson::toJson(QVariantHash{
                                   {"title", "Alpha"}, {"type", "audio"}, {"id", id}, {"path", "library:/track/" + id},
                                   {"mediaData",
                                    QVariantHash{{"resources", QVariantList{QVariantHash{{"uri", uri}, {"duration", 1}, {"mimeType", "audio/mpeg"}}}},
                                                 {"metaData", QVariantHash{{"artist", "Zed"}, {"album", "Second Album"}, {"genre", "Rock"}, {"serviceId", "library"}}}}}})
                  .toStdString());
}

TEST_F(LibraryBrowse, SearchFindsArtistsAlbumsAndTracksByWordPrefixesWithoutCaseOrAccents)
{
    EXPECT_EQ(titles("library:/search?q=UBER"), (QStringList{"Über Alles"}));
    EXPECT_EQ(titles("library:/search?q=ze%20sec"), (QStringList{"Second Album", "Alpha", "Beta"}));
    EXPECT_EQ(titles("library:/search?q=arg"), (QStringList{"Ärger", "Nacht", "Über Alles"}));
    EXPECT_EQ(titles("library:/search?q=lles%20uber"), QStringList());
    EXPECT_EQ(rows("library:/search?q=%25").value("rowsCount"), 0);
}

TEST_F(LibraryBrowse, PathsThatNameNothingAnswerNothing)
{
    EXPECT_EQ(api().rows("library:/album/99999").status, 404);
    EXPECT_EQ(api().rows("library:/album/x").status, 404);
    EXPECT_EQ(api().data("library:/track/99999").status, 404);
    EXPECT_EQ(api().data("library:/album/99999").status, 404);
    EXPECT_NE(api().rows("library:/../../etc").status, 200);
    EXPECT_EQ(api().rows("library:/menu?itemid=library:/track/99999").status, 404);
    const HttpReply prepared = api().setData("library:/prepare-items", QVariantList{"library:/track/99999", "library:/folder/-1", "/etc/passwd", 7});
    EXPECT_EQ(prepared.status, 200);
    EXPECT_EQ(prepared.json(), QVariant(QVariantList()));
}

TEST_F(LibraryHostTest, AFolderThatDoesNotExistIsReportedAndTheModuleKeepsAnswering)
{
    ASSERT_TRUE(m_music.remove());
    start();
    EXPECT_EQ(scan().value("state"), "idle");
    EXPECT_TRUE(scan().value("error").toString().contains(m_music.path()));
    EXPECT_EQ(rows("library:/artists").value("rowsCount"), 0);
}

} // namespace
