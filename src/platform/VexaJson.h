#pragma once

#include "VexaGlobal.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

// JSON text to and from the variants the value types are made of. Objects
// become QVariantHash (not QVariantMap), whole numbers that fit become int.
class VEXA_API VexaJson
{
public:
    // An invalid QVariant with *error set when the text is not JSON.
    static QVariant parse(const QByteArray& text, QString* error);
    static QByteArray toJson(const QVariant& value);
    // The same text written at the end of out, as a page is built row by row.
    static void appendJson(const QVariant& value, QByteArray& out);
};
