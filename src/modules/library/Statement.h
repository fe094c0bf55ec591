#pragma once

#include <QString>
#include <QVariant>

struct sqlite3;
struct sqlite3_stmt;

// One prepared statement of the library store. Values are always bound,
// never spliced into the text; a statement is reset before each use, so a
// read that stops early leaves nothing locked.
class Statement
{
public:
    Statement(sqlite3* db, const char* sql);
    ~Statement();

    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    bool isValid() const { return m_stmt != nullptr; }

    // Resets the statement and binds values to ?1, ?2, ... (integers, texts, or null).
    Statement& with(std::initializer_list<QVariant> values);
    // Steps once; true when a row came.
    bool next();
    // Steps to the end; true when the statement succeeded.
    bool run();

    qint64 integer(int column) const;
    QString text(int column) const;

private:
    sqlite3* m_db;
    sqlite3_stmt* m_stmt = nullptr;
};
