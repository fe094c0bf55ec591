#pragma once

#include <CMPath.h>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>

// Reading what clients send: content paths, numbers, role lists, JSON bodies.
// Every reader refuses what it cannot take with a message for the client
// instead of guessing.
class ApiInput
{
public:
    // A content path "prefix:/segments?params". Refused: empty text, no
    // prefix, a NUL character anywhere, a ".." segment in the path part.
    static bool readPath(const QVariant& value, CMPath* path, QString* error);
    // A whole decimal number within [min, max].
    static bool readInt(const QString& text, int min, int max, int* out, QString* error);
    // "R1,R2" in order, blanks and repeats dropped; empty or absent means
    // every role ("*").
    static QStringList readRoles(const QString& text);
    // A JSON object body.
    static bool readObject(const QByteArray& body, QVariantHash* object, QString* error);
};
