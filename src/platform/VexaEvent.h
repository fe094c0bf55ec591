#pragma once

#include "CMPath.h"
#include "VexaEventRowsType.h"
#include "VexaHash.h"

// An instruction to the client about one path, such as closing a menu.
class VEXA_API VexaEvent : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString RowsType() { return QStringLiteral("rowsType"); }
    static QString Path() { return QStringLiteral("path"); }

    VexaEventRowsType::Enum rowsType() const { return VexaEventRowsType::fromVariant(value(RowsType())); }
    void setRowsType(VexaEventRowsType::Enum v) { insert(RowsType(), VexaEventRowsType::toString(v)); }
    CMPath path() const { return CMPath(stringValue(Path())); }
    void setPath(const CMPath& v) { insert(Path(), v.toEncoded()); }
};
