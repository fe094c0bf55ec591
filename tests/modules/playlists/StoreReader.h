#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

struct sqlite3;

// A second, plain connection to the store file, for reading rows back and for
// planting rows or triggers that the module's own operations can't make.
class StoreReader
{
public:
    StoreReader();
    ~StoreReader();

    // Every row as text, columns joined by '|' (NULL shows as "<null>").
    QStringList rows(const char* sql, const QVariantList& args = QVariantList()) const;
    int scalar(const char* sql, const QVariantList& args = QVariantList()) const;
    // Runs a statement; true when it succeeded.
    bool exec(const char* sql, const QVariantList& args = QVariantList()) const;

    // "seq|title" for each entry of a playlist, in sequence order.
    QStringList entries(int playlist) const;
    // Every row of the tables that hold entries, for before/after comparisons.
    QStringList snapshot() const;

private:
    sqlite3* m_db = nullptr;
};
