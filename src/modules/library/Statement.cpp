#include "Statement.h"

#include "FileNames.h"
#include "LibraryLog.h"

#include <sqlite3.h>

Statement::Statement(sqlite3* db, const char* sql) : m_db(db)
{
    if (sqlite3_prepare_v3(db, sql, -1, SQLITE_PREPARE_PERSISTENT, &m_stmt, nullptr) != SQLITE_OK) {
        LOG4CPLUS_ERROR(libraryLogger(), "Cannot prepare " << sql << ": " << sqlite3_errmsg(db));
        m_stmt = nullptr;
    }
}

Statement::~Statement()
{
    sqlite3_finalize(m_stmt);
}

Statement& Statement::with(std::initializer_list<QVariant> values)
{
    if (!m_stmt)
        return *this;
    sqlite3_reset(m_stmt);
    sqlite3_clear_bindings(m_stmt);
    int index = 1;
    for (const QVariant& value : values) {
        if (value.isNull()) {
            sqlite3_bind_null(m_stmt, index);
        } else if (value.userType() == QMetaType::QString) {
            // File names keep their bytes, whether UTF-8 or not.
            const QByteArray text = FileNames::encode(value.toString());
            sqlite3_bind_text(m_stmt, index, text.constData(), text.size(), SQLITE_TRANSIENT);
        } else {
            sqlite3_bind_int64(m_stmt, index, value.toLongLong());
        }
        ++index;
    }
    return *this;
}

bool Statement::next()
{
    if (!m_stmt)
        return false;
    const int rc = sqlite3_step(m_stmt);
    if (rc == SQLITE_ROW)
        return true;
    if (rc != SQLITE_DONE)
        LOG4CPLUS_ERROR(libraryLogger(), "Statement failed: " << sqlite3_errmsg(m_db));
    sqlite3_reset(m_stmt);
    return false;
}

bool Statement::run()
{
    if (!m_stmt)
        return false;
    int rc;
    while ((rc = sqlite3_step(m_stmt)) == SQLITE_ROW) {
    }
    if (rc != SQLITE_DONE)
        LOG4CPLUS_ERROR(libraryLogger(), "Statement failed: " << sqlite3_errmsg(m_db));
    sqlite3_reset(m_stmt);
    return rc == SQLITE_DONE;
}

qint64 Statement::integer(int column) const
{
    return sqlite3_column_int64(m_stmt, column);
}

QString Statement::text(int column) const
{
    const auto* data = reinterpret_cast<const char*>(sqlite3_column_text(m_stmt, column));
    return data ? FileNames::decode(QByteArray::fromRawData(data, sqlite3_column_bytes(m_stmt, column))) : QString();
}
