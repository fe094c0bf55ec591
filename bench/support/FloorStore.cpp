#include "FloorStore.h"

#include "Database.h"

#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>

namespace {

const int kBeyondAnyNumber = 2147483647;

void bindText(sqlite3_stmt* stmt, int index, const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    sqlite3_bind_text(stmt, index, utf8.constData(), utf8.size(), SQLITE_TRANSIENT);
}

QString columnText(sqlite3_stmt* stmt, int column)
{
    const unsigned char* text = sqlite3_column_text(stmt, column);
    return text ? QString::fromUtf8(reinterpret_cast<const char*>(text), sqlite3_column_bytes(stmt, column))
                : QString();
}

} // namespace

FloorStore::FloorStore(const QString& path, const QStringList& schema)
{
    if (sqlite3_open(path.toUtf8().constData(), &m_db) != SQLITE_OK) {
        std::fprintf(stderr, "floor: cannot open %s\n", qPrintable(path));
        std::abort();
    }
    exec("PRAGMA foreign_keys=1;");
    for (const QString& statement : schema)
        exec(statement.toUtf8().constData());
    m_insertItem = prepare("INSERT INTO items(title, artist, album, artworkUrl, genre, durationSeconds, url,"
                           " serviceId, vexaRoles) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9)");
    m_insertEntry = prepare("INSERT INTO playlists_items(playlist, item, sequenceNumber) VALUES (?1, ?2, ?3)");
    m_shift = prepare("UPDATE playlists_items SET sequenceNumber = sequenceNumber + ?4"
                      " WHERE playlist = ?1 AND sequenceNumber >= ?2 AND sequenceNumber <= ?3");
    m_deleteRange = prepare("DELETE FROM playlists_items WHERE playlist = ?1 AND sequenceNumber >= ?2"
                            " AND sequenceNumber <= ?3");
    m_cleanItems = prepare("DELETE FROM items WHERE uid NOT IN (SELECT item FROM playlists_items)");
    m_read = prepare("SELECT pi.sequenceNumber, i.uid, i.title, i.artist, i.album, i.artworkUrl, i.genre,"
                     " i.durationSeconds, i.url, i.serviceId, i.vexaRoles"
                     " FROM playlists_items pi JOIN items i ON i.uid = pi.item"
                     " WHERE pi.playlist = ?1 AND pi.sequenceNumber BETWEEN ?2 AND ?3 ORDER BY pi.sequenceNumber");
    m_move = prepare("UPDATE playlists_items SET playlist = ?1, sequenceNumber = sequenceNumber + ?2"
                     " WHERE playlist = ?3");
    m_deletePlayList = prepare("DELETE FROM playlists WHERE uid = ?1");
}

FloorStore::~FloorStore()
{
    for (sqlite3_stmt* stmt : {m_insertItem, m_insertEntry, m_shift, m_deleteRange, m_cleanItems, m_read, m_move, m_deletePlayList})
        sqlite3_finalize(stmt);
    sqlite3_close(m_db);
}

QStringList FloorStore::moduleSettings()
{
    QStringList pragmas;
    for (const char* pragma : Database::ConnectionPragmas)
        pragmas.append(QString::fromLatin1(pragma));
    return pragmas;
}

QStringList FloorStore::schemaOf(const QString& path)
{
    QStringList schema;
    sqlite3* db = nullptr;
    sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(db, "SELECT sql FROM sqlite_master WHERE sql IS NOT NULL ORDER BY rowid", -1, &stmt,
                       nullptr);
    while (sqlite3_step(stmt) == SQLITE_ROW)
        schema.append(columnText(stmt, 0));
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    return schema;
}

void FloorStore::exec(const char* sql)
{
    char* error = nullptr;
    if (sqlite3_exec(m_db, sql, nullptr, nullptr, &error) != SQLITE_OK) {
        std::fprintf(stderr, "floor: %s: %s\n", sql, error);
        std::abort();
    }
}

sqlite3_stmt* FloorStore::prepare(const char* sql)
{
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(m_db, sql, -1, &stmt, nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "floor: %s: %s\n", sql, sqlite3_errmsg(m_db));
        std::abort();
    }
    return stmt;
}

void FloorStore::run(sqlite3_stmt* stmt)
{
    const int rc = sqlite3_step(stmt);
    if (rc != SQLITE_DONE && rc != SQLITE_ROW) {
        std::fprintf(stderr, "floor: %s: %s\n", sqlite3_sql(stmt), sqlite3_errmsg(m_db));
        std::abort();
    }
    sqlite3_reset(stmt);
}

void FloorStore::shiftFrom(int playlist, int from, int delta, int size)
{
    sqlite3_bind_int(m_shift, 1, playlist);
    sqlite3_bind_int(m_shift, 2, from);
    sqlite3_bind_int(m_shift, 3, size);
    sqlite3_bind_int(m_shift, 4, size + 1 + delta + (delta < 0 ? -delta : 0));
    run(m_shift);
    sqlite3_bind_int(m_shift, 1, playlist);
    sqlite3_bind_int(m_shift, 2, size + 1);
    sqlite3_bind_int(m_shift, 3, kBeyondAnyNumber);
    sqlite3_bind_int(m_shift, 4, -(size + 1 + (delta < 0 ? -delta : 0)));
    run(m_shift);
}

void FloorStore::createPlayList(int uid, const QString& name)
{
    sqlite3_stmt* stmt = prepare("INSERT INTO playlists(uid, name, lastPlayedIndex) VALUES (?1, ?2, -1)");
    sqlite3_bind_int(stmt, 1, uid);
    bindText(stmt, 2, name);
    run(stmt);
    sqlite3_finalize(stmt);
}

void FloorStore::addItems(int playlist, int at, int size, const QList<VexaPlayListItem>& items)
{
    exec("BEGIN IMMEDIATE;");
    if (at < size)
        shiftFrom(playlist, at, items.size(), size);
    for (int k = 0; k < items.size(); ++k) {
        const VexaPlayListItem& item = items.at(k);
        // The UTF-8 buffers live until the step is done, so SQLite need not copy them.
        const QByteArray texts[] = {item.title().toUtf8(),     item.artist().toUtf8(),  item.album().toUtf8(),
                                    item.artworkUrl().toUtf8(), item.genre().toUtf8(),   QByteArray(),
                                    item.url().toUtf8(),       item.serviceId().toUtf8(), item.vexaRoles().toUtf8()};
        for (int column = 1; column <= 9; ++column) {
            if (column == 6)
                continue;
            const QByteArray& text = texts[column - 1];
            sqlite3_bind_text(m_insertItem, column, text.constData(), text.size(), SQLITE_STATIC);
        }
        sqlite3_bind_int(m_insertItem, 6, item.durationSeconds());
        run(m_insertItem);
        sqlite3_bind_int(m_insertEntry, 1, playlist);
        sqlite3_bind_int64(m_insertEntry, 2, sqlite3_last_insert_rowid(m_db));
        sqlite3_bind_int(m_insertEntry, 3, at + k);
        run(m_insertEntry);
    }
    exec("COMMIT;");
}

void FloorStore::mergePlayList(int source, int playlist, int size)
{
    // The entries change playlist in one statement; the emptied source goes.
    exec("BEGIN IMMEDIATE;");
    sqlite3_bind_int(m_move, 1, playlist);
    sqlite3_bind_int(m_move, 2, size);
    sqlite3_bind_int(m_move, 3, source);
    run(m_move);
    sqlite3_bind_int(m_deletePlayList, 1, source);
    run(m_deletePlayList);
    run(m_cleanItems);
    exec("COMMIT;");
}

void FloorStore::deletePlayList(int playlist)
{
    exec("BEGIN;");
    sqlite3_bind_int(m_deletePlayList, 1, playlist);
    run(m_deletePlayList);
    run(m_cleanItems);
    exec("COMMIT;");
}

void FloorStore::moveItem(int playlist, int from, int to, int size)
{
    const int low = from < to ? from : to;
    const int high = from < to ? to : from;
    const int dir = from > to ? -1 : 1;
    exec("BEGIN;");
    sqlite3_bind_int(m_shift, 1, playlist);
    sqlite3_bind_int(m_shift, 2, low);
    sqlite3_bind_int(m_shift, 3, high);
    sqlite3_bind_int(m_shift, 4, size);
    run(m_shift);
    sqlite3_bind_int(m_shift, 1, playlist);
    sqlite3_bind_int(m_shift, 2, from + size);
    sqlite3_bind_int(m_shift, 3, from + size);
    sqlite3_bind_int(m_shift, 4, to - from - size);
    run(m_shift);
    sqlite3_bind_int(m_shift, 1, playlist);
    sqlite3_bind_int(m_shift, 2, low + size);
    sqlite3_bind_int(m_shift, 3, high + size);
    sqlite3_bind_int(m_shift, 4, -(dir + size));
    run(m_shift);
    exec("COMMIT;");
}

void FloorStore::removeRange(int playlist, int from, int count, int size)
{
    exec("BEGIN IMMEDIATE;");
    sqlite3_bind_int(m_deleteRange, 1, playlist);
    sqlite3_bind_int(m_deleteRange, 2, from);
    sqlite3_bind_int(m_deleteRange, 3, from + count - 1);
    run(m_deleteRange);
    run(m_cleanItems);
    shiftFrom(playlist, from + count, -count, size);
    exec("COMMIT;");
}

void FloorStore::clearPlayList(int playlist)
{
    // Only used to undo a timed add. With foreign keys on, every deleted item
    // row scans playlists_items for references (no index leads with item),
    // which for 10,000 items takes seconds; the check is pointless here since
    // exactly the unreferenced rows go.
    exec("PRAGMA foreign_keys=0;");
    exec("BEGIN IMMEDIATE;");
    sqlite3_bind_int(m_deleteRange, 1, playlist);
    sqlite3_bind_int(m_deleteRange, 2, 0);
    sqlite3_bind_int(m_deleteRange, 3, kBeyondAnyNumber);
    run(m_deleteRange);
    run(m_cleanItems);
    exec("COMMIT;");
    exec("PRAGMA foreign_keys=1;");
}

QList<VexaPlayListItem> FloorStore::readItems(int playlist, int from, int to)
{
    QList<VexaPlayListItem> items;
    sqlite3_bind_int(m_read, 1, playlist);
    sqlite3_bind_int(m_read, 2, from);
    sqlite3_bind_int(m_read, 3, to);
    while (sqlite3_step(m_read) == SQLITE_ROW) {
        VexaPlayListItem item;
        item.setSequenceNumber(sqlite3_column_int(m_read, 0));
        item.setUid(sqlite3_column_int(m_read, 1));
        item.setTitle(columnText(m_read, 2));
        item.setArtist(columnText(m_read, 3));
        item.setAlbum(columnText(m_read, 4));
        item.setArtworkUrl(columnText(m_read, 5));
        item.setGenre(columnText(m_read, 6));
        item.setDurationSeconds(sqlite3_column_int(m_read, 7));
        item.setUrl(columnText(m_read, 8));
        item.setServiceId(columnText(m_read, 9));
        item.setVexaRoles(columnText(m_read, 10));
        items.append(item);
    }
    sqlite3_reset(m_read);
    return items;
}

QString FloorStore::describe(int playlist)
{
    sqlite3_stmt* stmt = prepare("SELECT COUNT(*), MIN(sequenceNumber), MAX(sequenceNumber),"
                                 " COUNT(DISTINCT sequenceNumber) FROM playlists_items WHERE playlist = ?1");
    sqlite3_bind_int(stmt, 1, playlist);
    QString text;
    if (sqlite3_step(stmt) == SQLITE_ROW) {
        text = QStringLiteral("%1 entries, numbers %2..%3, %4 distinct")
                   .arg(columnText(stmt, 0), columnText(stmt, 1), columnText(stmt, 2), columnText(stmt, 3));
    }
    sqlite3_finalize(stmt);
    return text;
}
