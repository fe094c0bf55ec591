#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

struct sqlite3;
struct sqlite3_stmt;

// One prepared statement of the store. Every use binds its parameters, steps,
// reads columns and ends with reset(), whose result tells whether the step
// succeeded.
class Sqlite3Statement
{
public:
    // Prepares sql on db; null (after a FATAL line) when SQLite refuses it.
    static Sqlite3Statement* create(sqlite3* db, const QString& sql, const QString& name);

    bool bindInt(const int& index, const int& value);
    // Binds the UTF-8 form of value without letting SQLite copy it; the buffer
    // is kept until the next reset().
    bool bindText(const int& index, const QString& value);

    // True exactly when the step produced a row.
    bool step_row();
    // The step's result code; callers learn the outcome from reset().
    int step();

    int columnInt(const int& column);
    // A NULL column gives a null string.
    QString columnText(const int& column);

    // Resets the statement and drops the text buffers. Bound values stay bound.
    bool reset();
    // Steps a statement that returns no rows and resets it: false when it failed.
    bool run()
    {
        step();
        return reset();
    }

private:
    Sqlite3Statement(sqlite3_stmt* stmt, const QString& name);

    sqlite3_stmt* m_stmt;
    QString m_name;
    QList<QByteArray> m_textBindings;
};
