#pragma once

#include "VexaRoles.h"

// The answer to a rows request: the header roles, the total number of rows
// and the rows of the requested page.
class VEXA_API VexaRowsRoles : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString Roles() { return QStringLiteral("roles"); }
    static QString RowsCount() { return QStringLiteral("rowsCount"); }
    static QString Rows() { return QStringLiteral("rows"); }

    VexaRoles roles() const { return VexaRoles(hashValue(Roles())); }
    void setRoles(const VexaRoles& v) { insert(Roles(), v.toVariant()); }
    int rowsCount() const { return intValue(RowsCount(), 0); }
    void setRowsCount(int v) { insert(RowsCount(), v); }
    QVariantList rows() const { return value(Rows()).toList(); }
    void setRows(const QVariantList& v) { insert(Rows(), v); }
};
