#include "LibraryStore.h"

#include "FileNames.h"
#include "LibraryLog.h"
#include "SearchText.h"
#include "Statement.h"

#include <QFile>
#include <QFileInfo>

#include <map>

#include <sqlite3.h>

namespace {

const char* const kSchema = R"(
CREATE TABLE IF NOT EXISTS folders(id INTEGER PRIMARY KEY, parent INTEGER, path TEXT NOT NULL UNIQUE,
  name TEXT NOT NULL, sort_key TEXT NOT NULL);
CREATE INDEX IF NOT EXISTS folders_by_parent ON folders(parent, sort_key);
CREATE TABLE IF NOT EXISTS artists(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE, sort_key TEXT NOT NULL);
CREATE INDEX IF NOT EXISTS artists_by_sort ON artists(sort_key);
CREATE TABLE IF NOT EXISTS genres(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE, sort_key TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS albums(id INTEGER PRIMARY KEY, title TEXT NOT NULL, artist INTEGER NOT NULL,
  year INTEGER NOT NULL, artwork TEXT, sort_key TEXT NOT NULL, search TEXT NOT NULL, UNIQUE(artist, title));
CREATE INDEX IF NOT EXISTS albums_by_sort ON albums(sort_key);
CREATE INDEX IF NOT EXISTS albums_by_artist ON albums(artist, year, sort_key);
CREATE TABLE IF NOT EXISTS tracks(id INTEGER PRIMARY KEY, file TEXT NOT NULL UNIQUE, folder INTEGER NOT NULL,
  file_name TEXT NOT NULL, size INTEGER NOT NULL, mtime INTEGER NOT NULL, title TEXT NOT NULL,
  artist INTEGER NOT NULL, album INTEGER NOT NULL, genre INTEGER, track_no INTEGER NOT NULL,
  disc_no INTEGER NOT NULL, duration INTEGER NOT NULL, mime TEXT, artwork TEXT, sort_key TEXT NOT NULL,
  search TEXT NOT NULL);
CREATE INDEX IF NOT EXISTS tracks_by_album ON tracks(album, disc_no, track_no, sort_key);
CREATE INDEX IF NOT EXISTS tracks_by_sort ON tracks(sort_key);
CREATE INDEX IF NOT EXISTS tracks_by_genre ON tracks(genre);
CREATE INDEX IF NOT EXISTS tracks_by_folder ON tracks(folder, file_name);
CREATE INDEX IF NOT EXISTS tracks_by_artist ON tracks(artist);
CREATE TABLE IF NOT EXISTS unreadable(file TEXT PRIMARY KEY, size INTEGER NOT NULL, mtime INTEGER NOT NULL);
)";

#define TRACK_COLUMNS                                                                                                  \
    "SELECT t.id, t.title, t.artwork, t.file, ar.name, al.title, g.name, t.mime, t.duration FROM tracks t "          \
    "JOIN artists ar ON ar.id = t.artist JOIN albums al ON al.id = t.album LEFT JOIN genres g ON g.id = t.genre "

struct ListSql
{
    ListKind kind;
    EntryKind entry;
    const char* sql;
};

// Each list's rows in browse order; ?1 is the key. Paging and counting wrap them.
const ListSql kLists[] = {
    {ListKind::Artists, EntryKind::Artist,
     "SELECT id, name, NULL FROM artists WHERE id IN (SELECT artist FROM albums) ORDER BY sort_key, id"},
    {ListKind::Albums, EntryKind::Album, "SELECT id, title, artwork FROM albums ORDER BY sort_key, id"},
    {ListKind::Genres, EntryKind::Genre, "SELECT id, name, NULL FROM genres ORDER BY sort_key, id"},
    {ListKind::Tracks, EntryKind::Track, TRACK_COLUMNS "ORDER BY t.sort_key, t.id"},
    {ListKind::ArtistAlbums, EntryKind::Album,
     "SELECT id, title, artwork FROM albums WHERE artist = ?1 ORDER BY year, sort_key, id"},
    {ListKind::AlbumTracks, EntryKind::Track,
     TRACK_COLUMNS "WHERE t.album = ?1 ORDER BY t.disc_no, t.track_no, t.sort_key, t.id"},
    {ListKind::GenreArtists, EntryKind::Artist,
     "SELECT id, name, NULL FROM artists WHERE id IN (SELECT al.artist FROM tracks t JOIN albums al "
     "ON al.id = t.album WHERE t.genre = ?1) ORDER BY sort_key, id"},
    {ListKind::GenreTracks, EntryKind::Track,
     TRACK_COLUMNS "JOIN artists aa ON aa.id = al.artist WHERE t.genre = ?1 "
                   "ORDER BY aa.sort_key, al.year, al.sort_key, al.id, t.disc_no, t.track_no, t.id"},
    {ListKind::FolderFolders, EntryKind::Folder,
     "SELECT id, name, NULL FROM folders WHERE parent = ?1 ORDER BY sort_key, id"},
    {ListKind::FolderTracks, EntryKind::Track, TRACK_COLUMNS "WHERE t.folder = ?1 ORDER BY t.file_name, t.id"},
    {ListKind::SearchArtists, EntryKind::Artist,
     "SELECT id, name, NULL FROM artists WHERE words_match(sort_key, ?1) ORDER BY sort_key, id"},
    {ListKind::SearchAlbums, EntryKind::Album,
     "SELECT id, title, artwork FROM albums WHERE words_match(search, ?1) ORDER BY sort_key, id"},
    {ListKind::SearchTracks, EntryKind::Track, TRACK_COLUMNS "WHERE words_match(t.search, ?1) ORDER BY t.sort_key, t.id"},
};

void wordsMatch(sqlite3_context* context, int, sqlite3_value** args)
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(args[0]));
    const auto* query = reinterpret_cast<const char*>(sqlite3_value_text(args[1]));
    if (!text || !query) {
        sqlite3_result_int(context, 0);
        return;
    }
    sqlite3_result_int(context, SearchText::matches(QByteArray::fromRawData(text, sqlite3_value_bytes(args[0])),
                                                    QByteArray::fromRawData(query, sqlite3_value_bytes(args[1]))));
}

// An entry from the columns every list starts with: id, title, artwork, and the track's own after them.
LibraryEntry readEntry(const Statement& st, EntryKind kind)
{
    LibraryEntry entry;
    entry.kind = kind;
    entry.id = st.integer(0);
    entry.title = st.text(1);
    entry.artwork = st.text(2);
    if (kind == EntryKind::Track) {
        entry.file = st.text(3);
        entry.artist = st.text(4);
        entry.album = st.text(5);
        entry.genre = st.text(6);
        entry.mimeType = st.text(7);
        entry.durationSeconds = int(st.integer(8));
    }
    return entry;
}

QString orUnknown(const QString& name, const char* unknown)
{
    return name.isEmpty() ? QString::fromLatin1(unknown) : name;
}

} // namespace

struct LibraryStore::Statements
{
    explicit Statements(sqlite3* db)
        : stamps(db, "SELECT file, size, mtime FROM tracks UNION ALL SELECT file, size, mtime FROM unreadable"),
          findFolder(db, "SELECT id FROM folders WHERE path = ?1"),
          addFolder(db, "INSERT INTO folders(parent, path, name, sort_key) VALUES(?1, ?2, ?3, ?4)"),
          findArtist(db, "SELECT id FROM artists WHERE name = ?1"),
          addArtist(db, "INSERT INTO artists(name, sort_key) VALUES(?1, ?2)"),
          findGenre(db, "SELECT id FROM genres WHERE name = ?1"),
          addGenre(db, "INSERT INTO genres(name, sort_key) VALUES(?1, ?2)"),
          findAlbum(db, "SELECT id FROM albums WHERE artist = ?1 AND title = ?2"),
          addAlbum(db, "INSERT INTO albums(artist, title, year, sort_key, search) VALUES(?1, ?2, ?3, ?4, ?5)"),
          coverAlbum(db, "UPDATE albums SET artwork = ?2 WHERE id = ?1 AND artwork IS NULL"),
          putTrack(db, "INSERT INTO tracks(file, folder, file_name, size, mtime, title, artist, album, genre, track_no, "
                       "disc_no, duration, mime, artwork, sort_key, search) "
                       "VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16) "
                       "ON CONFLICT(file) DO UPDATE SET folder = ?2, file_name = ?3, size = ?4, mtime = ?5, "
                       "title = ?6, artist = ?7, album = ?8, genre = ?9, track_no = ?10, disc_no = ?11, "
                       "duration = ?12, mime = ?13, artwork = ?14, sort_key = ?15, search = ?16"),
          putUnreadable(db, "INSERT OR REPLACE INTO unreadable(file, size, mtime) VALUES(?1, ?2, ?3)"),
          dropTrack(db, "DELETE FROM tracks WHERE file = ?1"),
          dropUnreadable(db, "DELETE FROM unreadable WHERE file = ?1"),
          trackCount(db, "SELECT COUNT(*) FROM tracks"),
          unreadableCount(db, "SELECT COUNT(*) FROM unreadable"),
          track(db, TRACK_COLUMNS "WHERE t.id = ?1"),
          names{{db, "SELECT name FROM artists WHERE id = ?1"},
                {db, "SELECT title FROM albums WHERE id = ?1"},
                {db, "SELECT name FROM genres WHERE id = ?1"},
                {db, "SELECT name FROM folders WHERE id = ?1"},
                {db, "SELECT title FROM tracks WHERE id = ?1"}}
    {
        for (const ListSql& list : kLists) {
            pages.emplace(list.kind, std::make_unique<Statement>(
                                         db, (QByteArray(list.sql) + " LIMIT ?2 OFFSET ?3").constData()));
            counts.emplace(list.kind, std::make_unique<Statement>(
                                          db, (QByteArray("SELECT COUNT(*) FROM (") + list.sql + ")").constData()));
        }
    }

    Statement stamps, findFolder, addFolder, findArtist, addArtist, findGenre, addGenre, findAlbum, addAlbum,
        coverAlbum, putTrack, putUnreadable, dropTrack, dropUnreadable, trackCount, unreadableCount, track;
    Statement names[5];
    std::map<ListKind, std::unique_ptr<Statement>> pages;
    std::map<ListKind, std::unique_ptr<Statement>> counts;
    // Counts are asked with every page; they only change with the store.
    QHash<QPair<int, QString>, int> countCache;
};

LibraryStore::LibraryStore() = default;

LibraryStore::~LibraryStore()
{
    m_st.reset();
    sqlite3_close(m_db);
}

bool LibraryStore::open(const QString& file)
{
    if (sqlite3_open_v2(QFile::encodeName(file).constData(), &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                        nullptr) != SQLITE_OK) {
        LOG4CPLUS_ERROR(libraryLogger(), "Cannot open " << file << ": " << sqlite3_errmsg(m_db));
        return false;
    }
    sqlite3_create_function(m_db, "words_match", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, &wordsMatch, nullptr,
                            nullptr);
    // WAL with normal syncing: a kill loses at most the batch being written,
    // which the next scan reads again.
    if (!exec("PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL; PRAGMA busy_timeout=5000;") || !exec(kSchema))
        return false;
    m_st = std::make_unique<Statements>(m_db);
    return true;
}

bool LibraryStore::exec(const char* sql)
{
    char* error = nullptr;
    if (sqlite3_exec(m_db, sql, nullptr, nullptr, &error) != SQLITE_OK) {
        LOG4CPLUS_ERROR(libraryLogger(), "Store statement failed: " << error);
        sqlite3_free(error);
        return false;
    }
    return true;
}

bool LibraryStore::begin()
{
    return exec("BEGIN");
}

bool LibraryStore::commit()
{
    return exec("COMMIT");
}

QHash<QString, LibraryStore::Stamp> LibraryStore::stamps()
{
    QHash<QString, Stamp> result;
    Statement& st = m_st->stamps.with({});
    while (st.next())
        result.insert(st.text(0), Stamp{st.integer(1), st.integer(2)});
    return result;
}

qint64 LibraryStore::idOf(Statement& find, Statement& insert, std::initializer_list<QVariant> key,
                          std::initializer_list<QVariant> row)
{
    if (find.with(key).next()) {
        const qint64 id = find.integer(0);
        find.with({});
        return id;
    }
    return insert.with(row).run() ? sqlite3_last_insert_rowid(m_db) : 0;
}

qint64 LibraryStore::folderOf(const QString& dir, const QString& root)
{
    const auto known = m_folders.constFind(dir);
    if (known != m_folders.constEnd())
        return known.value();
    QVariant parent;
    if (dir != root && dir.startsWith(root + QLatin1Char('/')))
        parent = folderOf(QFileInfo(dir).path(), root);
    const QString name = FileNames::display(dir == root ? dir : QFileInfo(dir).fileName());
    const qint64 id = idOf(m_st->findFolder, m_st->addFolder, {dir}, {parent, dir, name, SearchText::fold(name)});
    m_folders.insert(dir, id);
    return id;
}

bool LibraryStore::putTrack(const QString& file, const QString& root, const Stamp& stamp, const TrackTags& tags,
                            const QString& artwork)
{
    m_st->countCache.clear();
    const QString artistName = orUnknown(tags.artist, "Unknown artist");
    const QString albumArtistName = tags.albumArtist.isEmpty() ? artistName : tags.albumArtist;
    const QString albumTitle = orUnknown(tags.album, "Unknown album");
    const qint64 artist = idOf(m_st->findArtist, m_st->addArtist, {artistName}, {artistName, SearchText::fold(artistName)});
    const qint64 albumArtist = albumArtistName == artistName
        ? artist
        : idOf(m_st->findArtist, m_st->addArtist, {albumArtistName}, {albumArtistName, SearchText::fold(albumArtistName)});
    const qint64 album = idOf(m_st->findAlbum, m_st->addAlbum, {albumArtist, albumTitle},
                              {albumArtist, albumTitle, tags.year, SearchText::fold(albumTitle),
                               SearchText::fold(albumTitle + QLatin1Char(' ') + albumArtistName)});
    QVariant genre;
    if (!tags.genre.isEmpty())
        genre = idOf(m_st->findGenre, m_st->addGenre, {tags.genre}, {tags.genre, SearchText::fold(tags.genre)});
    if (!artwork.isEmpty())
        m_st->coverAlbum.with({album, artwork}).run();
    const QFileInfo info(file);
    const qint64 folder = folderOf(info.path(), root);
    m_st->dropUnreadable.with({file}).run();
    const QString search = SearchText::fold(tags.title + QLatin1Char(' ') + artistName + QLatin1Char(' ') + albumTitle);
    return folder && artist && album
        && m_st->putTrack
               .with({file, folder, info.fileName(), stamp.size, stamp.mtime, tags.title, artist, album, genre,
                      tags.trackNumber, tags.discNumber, tags.durationSeconds, tags.mimeType,
                      artwork.isEmpty() ? QVariant() : QVariant(artwork), SearchText::fold(tags.title), search})
               .run();
}

bool LibraryStore::putUnreadable(const QString& file, const Stamp& stamp)
{
    m_st->countCache.clear();
    m_st->dropTrack.with({file}).run();
    return m_st->putUnreadable.with({file, stamp.size, stamp.mtime}).run();
}

bool LibraryStore::removeFile(const QString& file)
{
    m_st->countCache.clear();
    return m_st->dropTrack.with({file}).run() && m_st->dropUnreadable.with({file}).run();
}

bool LibraryStore::prune()
{
    m_st->countCache.clear();
    m_folders.clear();
    if (!exec("DELETE FROM albums WHERE id NOT IN (SELECT album FROM tracks);"
              "DELETE FROM genres WHERE id NOT IN (SELECT genre FROM tracks WHERE genre IS NOT NULL);"
              "DELETE FROM artists WHERE id NOT IN (SELECT artist FROM tracks) AND id NOT IN (SELECT artist FROM albums);"))
        return false;
    // Folders go from the leaves up: a folder is kept while a track or a folder is in it.
    do {
        if (!exec("DELETE FROM folders WHERE id NOT IN (SELECT folder FROM tracks) "
                  "AND id NOT IN (SELECT parent FROM folders WHERE parent IS NOT NULL)"))
            return false;
    } while (sqlite3_changes(m_db) > 0);
    return true;
}

int LibraryStore::trackCount()
{
    Statement& st = m_st->trackCount.with({});
    return st.next() ? int(st.integer(0)) : 0;
}

int LibraryStore::unreadableCount()
{
    Statement& st = m_st->unreadableCount.with({});
    return st.next() ? int(st.integer(0)) : 0;
}

int LibraryStore::count(ListKind kind, const QVariant& key)
{
    const QPair<int, QString> cacheKey(int(kind), key.toString());
    const auto cached = m_st->countCache.constFind(cacheKey);
    if (cached != m_st->countCache.constEnd())
        return cached.value();
    Statement& st = m_st->counts.at(kind)->with({key});
    const int result = st.next() ? int(st.integer(0)) : 0;
    st.with({});
    m_st->countCache.insert(cacheKey, result);
    return result;
}

QList<LibraryEntry> LibraryStore::list(ListKind kind, const QVariant& key, int offset, int limit)
{
    EntryKind entryKind = EntryKind::Track;
    for (const ListSql& list : kLists) {
        if (list.kind == kind)
            entryKind = list.entry;
    }
    QList<LibraryEntry> result;
    Statement& st = m_st->pages.at(kind)->with({key, limit, offset});
    while (st.next())
        result.append(readEntry(st, entryKind));
    return result;
}

QString LibraryStore::nameOf(EntryKind kind, qint64 id)
{
    Statement& st = m_st->names[int(kind)].with({id});
    if (!st.next())
        return QString();
    const QString name = st.text(0);
    st.with({});
    return name;
}

qint64 LibraryStore::rootFolder(const QString& root)
{
    Statement& st = m_st->findFolder.with({root});
    const qint64 id = st.next() ? st.integer(0) : 0;
    st.with({});
    return id;
}

std::optional<LibraryEntry> LibraryStore::track(qint64 id)
{
    Statement& st = m_st->track.with({id});
    if (!st.next())
        return std::nullopt;
    const LibraryEntry entry = readEntry(st, EntryKind::Track);
    st.with({});
    return entry;
}
