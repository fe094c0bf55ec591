#pragma once

#include "VexaGlobal.h"

#include <QString>

// A user-visible text that has already been through translation. Keeping it a
// distinct type stops raw texts from being handed where a translated one is due.
class VEXA_API TrString
{
public:
    TrString() = default;
    explicit TrString(const QString& text) : m_text(text) {}

    const QString& text() const { return m_text; }
    operator QString() const { return m_text; }

private:
    QString m_text;
};
