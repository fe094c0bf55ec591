#include "LibraryHost.h"

#include <QDateTime>
#include <QFile>
#include <QImage>

namespace {

class LibraryFlows : public LibraryHostTest
{
protected:
    void SetUp() override
    {
        write("Zed/First/2.flac", tags("F2", "Zed", "First", 2, QString(), 1999));
        write("Zed/First/1.flac", tags("F1", "Zed", "First", 1, QString(), 1999));
        write("Zed/Last/1.mp3", tags("L1", "Zed", "Last", 1, QString(), 2005), MediaFiles::Format::Mp3);
        write("Solo.flac", tags("Solo", "Other", "Single"));
        start();
    }
    // Walks the menus of the row titled title in list: its menu, the entry
    // titled entry, then (for a playlist) the chooser's row for it, and the mode.
    HttpReply add(const QString& list, const QString& title, const QString& entry, const QString& mode,
                  const QString& playlist = QString()) const
    {
        QString chooser = pathOf(pathOf(list, title, "context"), entry);
        if (!playlist.isEmpty())
            chooser = pathOf(chooser, playlist);
        return api().setData(pathOf(chooser, mode), QVariant());
    }
    QStringList queue() const { return titles("playlists:/queue"); }
};

TEST_F(LibraryFlows, TracksAlbumsAndArtistsGoToTheQueueNowNextAndAppendFromTheirMenus)
{
    const QString zed = pathOf("library:/artists", "Zed");
    EXPECT_EQ(add(zed, "Last", "Add to play queue", "Append").status, 200);
    EXPECT_EQ(queue(), (QStringList{"L1"}));
    const QString status = api().subscribe({{"value", "player:/status"}});
    EXPECT_EQ(add("library:/tracks", "Solo", "Add to play queue", "Now").status, 200);
    EXPECT_EQ(queue(), (QStringList{"L1", "Solo"}));
    api().valuesUntil(status, [](const QList<QVariantHash>& seen) { return seen.last().value("track").toHash().value("title") == "Solo"; });
    EXPECT_EQ(add(zed, "First", "Add to play queue", "After current").status, 200);
    EXPECT_EQ(queue(), (QStringList{"L1", "Solo", "F1", "F2"}));
    EXPECT_EQ(add("library:/artists", "Zed", "Add to play queue", "Append").status, 200);
    EXPECT_EQ(queue(), (QStringList{"L1", "Solo", "F1", "F2", "F1", "F2", "L1"}));
}

TEST_F(LibraryFlows, AnAlbumGoesToAPlaylistThroughTheChooserWithWhatPlaysIt)
{
    ASSERT_EQ(api().setData("playlists:/create-playlist", QVariantHash{{"name", "Mix"}}).status, 200);
    const HttpReply reply = add("library:/albums", "First", "Add to playlist", "Append", "Mix");
    EXPECT_EQ(reply.status, 200) << reply.body.constData();
    const QVariantList tracks = rowList("playlists:/tracks/1");
    ASSERT_EQ(tracks.size(), 2);
    const QVariantHash first = tracks.first().toHash();
    EXPECT_EQ(first.value("title"), "F1");
    const QVariantHash media = first.value("mediaData").toHash();
    EXPECT_EQ(media.value("metaData").toHash().value("artist"), "Zed");
    EXPECT_EQ(media.value("metaData").toHash().value("album"), "First");
    const QVariantHash resource = media.value("resources").toList().value(0).toHash();
    EXPECT_EQ(resource.value("uri"), MediaFiles::uriOf(m_music.filePath("Zed/First/1.flac")));
    EXPECT_EQ(resource.value("duration"), 1);
}

TEST_F(LibraryFlows, ARescanReadsOnlyChangedFilesAndDropsVanishedOnes)
{
    // Same size and time: the change is not seen, so the file was not read again.
    const QString f1 = m_music.filePath("Zed/First/1.flac");
    const QDateTime modified = QFileInfo(f1).lastModified();
    ASSERT_TRUE(MediaFiles::tag(f1, {{"TITLE", "G1"}}));
    QFile file(f1);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.setFileTime(modified, QFileDevice::FileModificationTime));
    file.close();
    ASSERT_TRUE(rescan());
    EXPECT_EQ(titles("library:/tracks"), (QStringList{"F1", "F2", "L1", "Solo"}));

    ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.setFileTime(modified.addSecs(5), QFileDevice::FileModificationTime));
    file.close();
    ASSERT_TRUE(QFile::remove(m_music.filePath("Solo.flac")));
    write("New/n.flac", tags("N1", "Newcomer", "Fresh"));
    ASSERT_TRUE(rescan());
    EXPECT_EQ(titles("library:/tracks"), (QStringList{"F2", "G1", "L1", "N1"}));
    EXPECT_EQ(titles("library:/artists"), (QStringList{"Newcomer", "Zed"}));
    EXPECT_EQ(scan().value("done"), 4);
}

} // namespace

namespace {

TEST_F(LibraryHostTest, ArtworkIsScaledOnceAndServedByItsContentAddress)
{
    const QByteArray cover = MediaFiles::picture(0x3366cc, 600, "PNG");
    write("A/1.flac", tags("One", "A", "Covered", 1), MediaFiles::Format::Flac, cover);
    write("A/2.flac", tags("Two", "A", "Covered", 2), MediaFiles::Format::Flac, cover);
    QFile folderCover(m_music.filePath("B/cover.jpg"));
    write("B/1.mp3", tags("Three", "B", "Folder"), MediaFiles::Format::Mp3);
    ASSERT_TRUE(folderCover.open(QIODevice::WriteOnly) && folderCover.write(MediaFiles::picture(0xcc3333, 40, "JPEG")) > 0);
    folderCover.close();
    start();

    QStringList icons;
    for (const QVariant& row : rowList("library:/tracks"))
        icons.append(row.toHash().value("icon").toString());
    ASSERT_EQ(icons.size(), 3);
    EXPECT_EQ(icons.at(0), icons.at(2)) << "one picture, one thumbnail";
    EXPECT_TRUE(icons.at(0).endsWith(".png"));
    EXPECT_TRUE(icons.at(1).endsWith(".jpg"));
    EXPECT_EQ(QDir(m_host.root() + "/data-rw/library/public").entryList(QDir::Files).size(), 2);

    const HttpReply png = m_host.client().get(icons.at(0));
    EXPECT_EQ(png.status, 200);
    EXPECT_EQ(png.headers.value("content-type"), "image/png");
    EXPECT_FALSE(png.headers.value("etag").isEmpty());
    EXPECT_TRUE(png.headers.value("cache-control").contains("max-age="));
    const QImage thumbnail = QImage::fromData(png.body);
    EXPECT_EQ(thumbnail.size(), QSize(300, 300));
    EXPECT_EQ(m_host.client().get(icons.at(1)).headers.value("content-type"), "image/jpeg");
    // A client that holds the picture under its ETag is told so, without the picture.
    const auto ifNoneMatch = [&](const QByteArray& tags) {
        return m_host.client().raw("GET " + icons.at(0).toUtf8() + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n"
                                   "If-None-Match: " + tags + "\r\n\r\n", 5000);
    };
    const HttpReply unchanged = ifNoneMatch("\"0\", W/" + png.headers.value("etag"));
    EXPECT_EQ(unchanged.status, 304);
    EXPECT_TRUE(unchanged.body.isEmpty());
    EXPECT_EQ(unchanged.headers.value("etag"), png.headers.value("etag"));
    EXPECT_EQ(ifNoneMatch("\"0\"").body, png.body);

    for (const char* bad : {"/files/library/..%2F..%2Fsettings.json", "/files/library/abc.gif", "/files/library/xyz.png",
                            "/files/library/abc", "/files/../data-rw/settings.json", "/files/library/0123.png"})
        EXPECT_EQ(m_host.client().get(bad).status, 404) << bad;
}

} // namespace

namespace {

TEST_F(LibraryHostTest, AFileAddedToTheFolderIsScannedWithoutBeingAsked)
{
    write("A/1.flac", tags("One", "A", "First"));
    start();
    write("A/2.flac", tags("Two", "A", "First"));
    const QDeadlineTimer deadline(10000);
    while (titles("library:/tracks").size() < 2 && !deadline.hasExpired())
        QThread::msleep(50);
    EXPECT_EQ(titles("library:/tracks"), (QStringList{"One", "Two"}));
}

} // namespace
