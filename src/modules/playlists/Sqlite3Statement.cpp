#include "Sqlite3Statement.h"

#include "PlayListsLog.h"

#include <sqlite3.h>

Sqlite3Statement::Sqlite3Statement(sqlite3_stmt* stmt, const QString& name)
    : m_stmt(stmt)
    , m_name(name)
{
}

Sqlite3Statement* Sqlite3Statement::create(sqlite3* db, const QString& sql, const QString& name)
{
    const QByteArray text = sql.toUtf8();
    sqlite3_stmt* stmt = nullptr;
    const int rc = sqlite3_prepare_v2(db, text.constData(), text.size(), &stmt, nullptr);
    if (rc != SQLITE_OK) {
        LOG4CPLUS_FATAL(PlayListsLog::logger(), "Unable to prepare statement " << name << ": " << sqlite3_errstr(rc));
        return nullptr;
    }
    return new Sqlite3Statement(stmt, name);
}

bool Sqlite3Statement::bindInt(const int& index, const int& value)
{
    return sqlite3_bind_int(m_stmt, index, value) == SQLITE_OK;
}

bool Sqlite3Statement::bindText(const int& index, const QString& value)
{
    // SQLite keeps only the pointer (SQLITE_STATIC), so the buffer has to
    // outlive the step; the list holds it until reset(). A QByteArray's data
    // does not move when the list grows.
    m_textBindings.append(value.toUtf8());
    const QByteArray& buffer = m_textBindings.last();
    return sqlite3_bind_text(m_stmt, index, buffer.constData(), buffer.size(), SQLITE_STATIC) == SQLITE_OK;
}

bool Sqlite3Statement::step_row()
{
    return sqlite3_step(m_stmt) == SQLITE_ROW;
}

int Sqlite3Statement::step()
{
    return sqlite3_step(m_stmt);
}

int Sqlite3Statement::columnInt(const int& column)
{
    return sqlite3_column_int(m_stmt, column);
}

QString Sqlite3Statement::columnText(const int& column)
{
    const unsigned char* text = sqlite3_column_text(m_stmt, column);
    if (!text)
        return QString();
    return QString::fromUtf8(reinterpret_cast<const char*>(text), sqlite3_column_bytes(m_stmt, column));
}

bool Sqlite3Statement::reset()
{
    const int code = sqlite3_reset(m_stmt);
    m_textBindings.clear();
    if (code != SQLITE_OK) {
        LOG4CPLUS_ERROR(PlayListsLog::logger(),
                        "Unable to reset sql statement: " << m_name << " msg: " << sqlite3_errstr(code));
        return false;
    }
    return true;
}
