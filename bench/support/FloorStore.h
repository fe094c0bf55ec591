#pragma once

#include "VexaPlayListItem.h"

#include <QList>
#include <QString>
#include <QStringList>

struct sqlite3;
struct sqlite3_stmt;

// The floor of the store benchmark: playlist operations done directly with
// plain SQLite statements on the playlist schema, keeping sequence numbers
// dense from 0 the cheapest way the unique (playlist, sequenceNumber) pair
// allows. Also used to put a store back between timed runs.
class FloorStore
{
public:
    // Opens path; schema, when not empty, is run first (PRAGMA and CREATE statements).
    FloorStore(const QString& path, const QStringList& schema);
    ~FloorStore();

    // The CREATE statements of an existing store file.
    static QStringList schemaOf(const QString& path);
    // The settings the module's store connection takes, so that a floor
    // opened with them commits as the module does.
    static QStringList moduleSettings();

    void createPlayList(int uid, const QString& name);
    // Inserts items at sequence number at of a playlist of size entries.
    void addItems(int playlist, int at, int size, const QList<VexaPlayListItem>& items);
    void moveItem(int playlist, int from, int to, int size);
    // Removes count entries from from on and closes the gap.
    void removeRange(int playlist, int from, int count, int size);
    // Moves a source playlist's entries behind those of a playlist of size
    // entries and deletes the source.
    void mergePlayList(int source, int playlist, int size);
    // Deletes a playlist, its entries and the items left without one.
    void deletePlayList(int playlist);
    // Deletes every entry of a playlist and the items left without one,
    // without the foreign-key checks (for undoing, not for timing).
    void clearPlayList(int playlist);
    // Reads the entries from..to the way a caller would use them.
    QList<VexaPlayListItem> readItems(int playlist, int from, int to);
    // "count min max" of a playlist's sequence numbers.
    QString describe(int playlist);

private:
    void exec(const char* sql);
    sqlite3_stmt* prepare(const char* sql);
    void run(sqlite3_stmt* stmt);
    // Adds delta to the entries at or after from, parking them beyond the end first.
    void shiftFrom(int playlist, int from, int delta, int size);

    sqlite3* m_db = nullptr;
    sqlite3_stmt* m_insertItem = nullptr;
    sqlite3_stmt* m_insertEntry = nullptr;
    sqlite3_stmt* m_shift = nullptr;
    sqlite3_stmt* m_deleteRange = nullptr;
    sqlite3_stmt* m_cleanItems = nullptr;
    sqlite3_stmt* m_read = nullptr;
    sqlite3_stmt* m_move = nullptr;
    sqlite3_stmt* m_deletePlayList = nullptr;
};
