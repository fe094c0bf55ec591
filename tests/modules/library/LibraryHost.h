#pragma once

#include "ApiCalls.h"
#include "HostProcess.h"
#include "MediaFiles.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

// The real host with the playlists and library modules, its library folder a
// temporary folder that each test fills with tones it tags itself.
class LibraryHostTest : public ::testing::Test
{
protected:
    LibraryHostTest()
        : m_host({HostProcess::playlistsModule(), HostProcess::libraryModule()},
                 {"--time-scale", "1000", "--set", "settings:/library/folder=" + m_music.path()})
    {
    }

    // Writes a one-second tone at rel below the music folder, tagged as given.
    QString write(const QString& rel, const QHash<QString, QString>& tags,
                  MediaFiles::Format format = MediaFiles::Format::Flac, const QByteArray& picture = QByteArray()) const
    {
        const QString path = m_music.filePath(rel);
        QDir().mkpath(QFileInfo(path).path());
        EXPECT_TRUE(MediaFiles::writeTone(path, 1000, 440, format)) << rel.toStdString();
        if (!tags.isEmpty() || !picture.isEmpty()) {
            EXPECT_TRUE(MediaFiles::tag(path, tags, picture)) << rel.toStdString();
        }
        return path;
    }
    static QHash<QString, QString> tags(const QString& title, const QString& artist, const QString& album,
                                        int track = 0, const QString& genre = QString(), int year = 0)
    {
        QHash<QString, QString> result{{"TITLE", title}, {"ARTIST", artist}, {"ALBUM", album}};
        if (track)
            result.insert("TRACKNUMBER", QString::number(track));
        if (!genre.isEmpty())
            result.insert("GENRE", genre);
        if (year)
            result.insert("DATE", QString::number(year));
        return result;
    }

    void start()
    {
        QString error;
        ASSERT_TRUE(m_host.start(&error)) << error.toStdString();
        ASSERT_TRUE(rescan());
    }
    // Asks for a scan and waits until it ended.
    bool rescan() const
    {
        if (api().setData("library:/rescan", QVariant()).status != 200)
            return false;
        const QDeadlineTimer deadline(30000);
        while (scan().value("state") != "idle") {
            if (deadline.hasExpired())
                return false;
            QThread::msleep(20);
        }
        return true;
    }
    QVariantHash scan() const { return api().data("library:/scan", "value").json().toHash().value("value").toHash(); }

    ApiCalls api() const { return ApiCalls(m_host.client()); }
    QVariantHash rows(const QString& path, int from = 0, int to = 99) const
    {
        return api().rows(path, "*", from, to).json().toHash();
    }
    QVariantList rowList(const QString& path) const { return rows(path).value("rows").toList(); }
    QStringList titles(const QString& path) const
    {
        QStringList result;
        for (const QVariant& row : rowList(path))
            result.append(row.toHash().value("title").toString());
        return result;
    }
    // The path of the row titled title in the list at path.
    QString pathOf(const QString& listPath, const QString& title, const char* role = "path") const
    {
        for (const QVariant& row : rowList(listPath)) {
            const QVariantHash roles = row.toHash();
            if (roles.value("title") == title) {
                const QVariant value = roles.value(role);
                return value.type() == QVariant::Hash ? value.toHash().value("path").toString() : value.toString();
            }
        }
        ADD_FAILURE() << "no row " << title.toStdString() << " in " << listPath.toStdString();
        return QString();
    }

    QTemporaryDir m_music;
    HostProcess m_host;
};
