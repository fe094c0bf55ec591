#include "TestSupport.h"

#include <log4cplus/spi/loggingevent.h>

#include <sqlite3.h>

#include <cstdio>

VexaPlayListItem TestItems::item(const QString& title)
{
    VexaPlayListItem item;
    item.setTitle(title);
    item.setArtist("artist of " + title);
    item.setAlbum("album");
    item.setArtworkUrl("http://art/" + title);
    item.setGenre("genre");
    item.setDurationSeconds(title.size() * 10);
    item.setUrl("file:///music/" + title);
    item.setServiceId("library");
    item.setVexaRoles("{\"title\":\"" + title + "\"}");
    return item;
}

namespace {

void bindAll(sqlite3_stmt* stmt, const QVariantList& args)
{
    for (int i = 0; i < args.size(); ++i) {
        if (args.at(i).type() == QVariant::Int) {
            sqlite3_bind_int(stmt, i + 1, args.at(i).toInt());
        } else {
            const QByteArray text = args.at(i).toString().toUtf8();
            sqlite3_bind_text(stmt, i + 1, text.constData(), text.size(), SQLITE_TRANSIENT);
        }
    }
}

} // namespace

StoreReader::StoreReader(const QString& file)
{
    sqlite3_open(file.toUtf8().constData(), &m_db);
    sqlite3_busy_timeout(m_db, 5000);
}

StoreReader::~StoreReader()
{
    sqlite3_close(m_db);
}

QStringList StoreReader::rows(const char* sql, const QVariantList& args) const
{
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(m_db, sql, -1, &stmt, nullptr) != SQLITE_OK)
        return {"prepare failed: " + QString::fromUtf8(sqlite3_errmsg(m_db))};
    bindAll(stmt, args);
    QStringList result;
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        QStringList columns;
        for (int c = 0; c < sqlite3_column_count(stmt); ++c) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, c));
            columns.append(text ? QString::fromUtf8(text, sqlite3_column_bytes(stmt, c)) : "<null>");
        }
        result.append(columns.join('|'));
    }
    sqlite3_finalize(stmt);
    return result;
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

void LogCapture::Appender::append(const log4cplus::spi::InternalLoggingEvent& event)
{
    const QString message = QString::fromStdString(event.getMessage());
    std::lock_guard<std::mutex> lock(mutex);
    events.append(qMakePair(int(event.getLogLevel()), message));
    if (echo) {
        std::fprintf(stderr, "%d %s\n", int(event.getLogLevel()), message.toUtf8().constData());
        std::fflush(stderr);
    }
}
