#pragma once

#include "LibraryEntry.h"
#include "TrackTags.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

#include <memory>

struct sqlite3;
class Statement;

// The lists the store answers, each paged with an offset and a limit. Most
// take an owner's id as their key; the search lists take the folded query.
enum class ListKind {
    Artists,
    Albums,
    Genres,
    Tracks,
    ArtistAlbums,
    AlbumTracks,
    GenreArtists,
    GenreTracks,
    FolderFolders,
    FolderTracks,
    SearchArtists,
    SearchAlbums,
    SearchTracks,
};

// The library's SQLite store (data-rw/library/library.sqlite): tracks with
// their file stamps, the artists, albums, genres and folders they belong to,
// and the files that could not be read. Every statement is prepared once.
// Used on one thread.
class LibraryStore
{
public:
    // What a file was when it was last read: a rescan reads it again only
    // when either differs.
    struct Stamp
    {
        qint64 size = -1;
        qint64 mtime = -1;
        bool operator==(const Stamp& o) const { return size == o.size && mtime == o.mtime; }
    };

    LibraryStore();
    ~LibraryStore();

    // Opens (or creates) the store at file; false when it cannot be used.
    bool open(const QString& file);

    bool begin();
    bool commit();

    // Every file read so far, tracks and unreadable ones alike.
    QHash<QString, Stamp> stamps();
    // Stores the track read from file, in folder dir below root.
    bool putTrack(const QString& file, const QString& root, const Stamp& stamp, const TrackTags& tags,
                  const QString& artwork);
    bool putUnreadable(const QString& file, const Stamp& stamp);
    bool removeFile(const QString& file);
    // Drops the artists, albums, genres and folders no track needs any more.
    bool prune();

    int trackCount();
    int unreadableCount();

    int count(ListKind kind, const QVariant& key = QVariant());
    QList<LibraryEntry> list(ListKind kind, const QVariant& key, int offset, int limit);
    // The name of an artist, album, genre or folder; null when there is none.
    QString nameOf(EntryKind kind, qint64 id);
    // The folder of the scanned root; 0 when nothing was found there.
    qint64 rootFolder(const QString& root);
    std::optional<LibraryEntry> track(qint64 id);

private:
    qint64 folderOf(const QString& dir, const QString& root);
    qint64 idOf(Statement& find, Statement& insert, std::initializer_list<QVariant> key, std::initializer_list<QVariant> row);
    bool exec(const char* sql);

    sqlite3* m_db = nullptr;
    struct Statements;
    std::unique_ptr<Statements> m_st;
    QHash<QString, qint64> m_folders;
};
