#include "VexaEnum.h"

#include "VexaVariant.h"

VexaEnumTable::VexaEnumTable(std::initializer_list<std::pair<int, const char*>> entries)
{
    m_entries.reserve(entries.size());
    for (const auto& e : entries)
        m_entries.emplace_back(e.first, QString::fromLatin1(e.second));
}

QString VexaEnumTable::name(int value) const
{
    for (const auto& e : m_entries) {
        if (e.first == value)
            return e.second;
    }
    return QString::number(value);
}

int VexaEnumTable::value(const QVariant& nameOrNumber, bool* ok) const
{
    int number = -1;
    bool found = VexaVariant::readInt(nameOrNumber, &number);
    if (!found && nameOrNumber.type() == QVariant::String) {
        const QString text = nameOrNumber.toString();
        for (const auto& e : m_entries) {
            if (e.second == text) {
                number = e.first;
                found = true;
                break;
            }
        }
    }
    if (ok)
        *ok = found;
    return found ? number : -1;
}
