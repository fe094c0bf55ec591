#include "LibraryHost.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

namespace {

// Names that are not UTF-8 (as an old Latin-1 disk has them) keep their
// bytes from the folder to the uri; a folder linked into itself ends the walk.
TEST_F(LibraryHostTest, NamesThatAreNotUtf8ArePlayedByTheirBytesAndALinkLoopIsWalkedOnce)
{
    const QByteArray folder = QFile::encodeName(m_music.path()) + "/Alt\xe9";
    ASSERT_EQ(::mkdir(folder.constData(), 0755), 0);
    const QString tagged = write("tagged.flac", tags("Café", "Old Disk", "Latin"));
    ASSERT_EQ(::rename(QFile::encodeName(tagged).constData(), (folder + "/caf\xe9.flac").constData()), 0);
    const QString untagged = write("untagged.flac", {});
    ASSERT_EQ(::rename(QFile::encodeName(untagged).constData(), (folder + "/\xff.flac").constData()), 0);
    ASSERT_EQ(::symlink(folder.constData(), (folder + "/again").constData()), 0);
    start();

    EXPECT_EQ(scan().value("tracks"), 2);
    EXPECT_EQ(titles("library:/folders"), QStringList{"Alt\uFFFD"});
    const QString alt = pathOf("library:/folders", "Alt\uFFFD");
    EXPECT_EQ(titles(alt), (QStringList{"Café", "\uFFFD"}));
    const QString uri = rowList(alt).value(0).toHash().value("mediaData").toHash().value("resources").toList().value(0)
                            .toHash().value("uri").toString();
    EXPECT_EQ(uri, "file://" + m_music.path() + "/Alt%E9/caf%E9.flac");
    EXPECT_TRUE(MediaFiles::plays(uri)) << uri.toStdString();
}

} // namespace
