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

TEST_F(LibraryHostTest, AScanKilledMidwayIsCompletedByTheNextStartWithEachTrackOnce)
{
    // Links to one untagged tone: a folder large enough to be killed in, made
    // at once, each track titled by its own name.
    constexpr int Files = 5000;
    const QByteArray tone = QFile::encodeName(write("00000.flac", {}));
    QStringList expected{"00000"};
    for (int i = 1; i < Files; ++i) {
        expected.append(QStringLiteral("%1").arg(i, 5, 10, QLatin1Char('0')));
        ASSERT_EQ(::link(tone.constData(), QFile::encodeName(m_music.filePath(expected.last() + ".flac")).constData()), 0);
    }
    QString error;
    ASSERT_TRUE(m_host.start(&error)) << error.toStdString();
    int stored = 0;
    const QDeadlineTimer deadline(10000);
    while (!stored && !deadline.hasExpired())
        stored = rows("library:/tracks", 0, 0).value("rowsCount").toInt();
    m_host.kill();
    ASSERT_GT(stored, 0);
    ASSERT_LT(stored, Files) << "the scan ended before the kill";

    // Started again, the host reads what is left; the rescan asked while it
    // does follows it, and a later one still comes to its end.
    start();
    ASSERT_TRUE(rescan());
    EXPECT_EQ(scan().value("tracks"), Files);
    QStringList titles;
    for (const QVariant& row : api().rows("library:/tracks", "title", 0, Files).json().toHash().value("rows").toList())
        titles.append(row.toList().value(0).toString());
    titles.sort();
    EXPECT_EQ(titles, expected);
}

} // namespace
