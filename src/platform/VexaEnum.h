#pragma once

#include "VexaGlobal.h"

#include <QString>
#include <QVariant>

#include <initializer_list>
#include <utility>
#include <vector>

// Names and numbers of one enumeration. Enumerations travel by name in JSON,
// but every reader also takes the number, as a number or as decimal text.
class VEXA_API VexaEnumTable
{
public:
    VexaEnumTable(std::initializer_list<std::pair<int, const char*>> entries);

    // The name of value, or its decimal text when it has none.
    QString name(int value) const;
    // The value of a name or of a number; ok tells whether it was one.
    int value(const QVariant& nameOrNumber, bool* ok) const;

private:
    std::vector<std::pair<int, QString>> m_entries;
};

// Base of the enumeration structs: each derived struct D declares `enum Enum`
// and `static const VexaEnumTable& table()`.
template <class D>
struct VexaEnum
{
    static QString toString(int value) { return D::table().name(value); }
    static auto fromString(const QString& name, bool* ok = nullptr)
    {
        return typename D::Enum(D::table().value(name, ok));
    }
    static auto fromVariant(const QVariant& nameOrNumber, bool* ok = nullptr)
    {
        return typename D::Enum(D::table().value(nameOrNumber, ok));
    }
};
