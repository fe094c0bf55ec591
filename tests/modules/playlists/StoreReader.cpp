#include "StoreReader.h"

#include <sqlite3.h>

namespace {

void bindAll(sqlite3_stmt* stmt, const QVariantList& args)
{
    for (int i = 0; i < args.size(); ++i) {
        const QVariant& arg = args.at(i);
        if (arg.isNull()) {
            sqlite3_bind_null(stmt, i + 1);
        } else if (arg.type() == QVariant::Int) {
            sqlite3_bind_int(stmt, i + 1, arg.toInt());
        } else {
            const QByteArray text = arg.toString().toUtf8();
            sqlite3_bind_text(stmt, i + 1, text.constData(), text.size(), SQLITE_TRANSIENT);
        }
    }
}

} // namespace

StoreReader::StoreReader()
{
    sqlite3_open("data-rw/playlists/playlists.sqlite", &m_db);
    sqlite3_busy_timeout(m_db, 2000);
}

StoreReader::~StoreReader()
{
    sqlite3_close(m_db);
}

QStringList StoreReader::rows(const char* sql, const QVariantList& args) const
{
    QStringList result;
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(m_db, sql, -1, &stmt, nullptr) != SQLITE_OK)
        return QStringList() << QStringLiteral("prepare failed: ") + QString::fromUtf8(sqlite3_errmsg(m_db));
    bindAll(stmt, args);
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        QStringList columns;
        for (int c = 0; c < sqlite3_column_count(stmt); ++c) {
            const unsigned char* text = sqlite3_column_text(stmt, c);
            columns.append(text ? QString::fromUtf8(reinterpret_cast<const char*>(text)) : QStringLiteral("<null>"));
        }
        result.append(columns.join(QLatin1Char('|')));
    }
    sqlite3_finalize(stmt);
    return result;
}

int StoreReader::scalar(const char* sql, const QVariantList& args) const
{
    const QStringList result = rows(sql, args);
    bool ok = false;
    const int value = result.isEmpty() ? 0 : result.first().toInt(&ok);
    return ok ? value : -999;
}

bool StoreReader::exec(const char* sql, const QVariantList& args) const
{
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(m_db, sql, -1, &stmt, nullptr) != SQLITE_OK)
        return false;
    bindAll(stmt, args);
    const int rc = sqlite3_step(stmt);
    sqlite3_finalize(stmt);
    return rc == SQLITE_DONE || rc == SQLITE_ROW;
}

QStringList StoreReader::entries(int playlist) const
{
    return rows("SELECT pi.sequenceNumber, i.title FROM playlists_items pi JOIN items i ON i.uid = pi.item"
                " WHERE pi.playlist = ?1 ORDER BY pi.sequenceNumber",
                {playlist});
}

QStringList StoreReader::snapshot() const
{
    return rows("SELECT 'pi', playlist, item, sequenceNumber FROM playlists_items"
                " UNION ALL SELECT 'it', uid, title, url FROM items"
                " UNION ALL SELECT 'pl', uid, name, lastPlayedIndex FROM playlists"
                " ORDER BY 1, 2, 3, 4");
}
