#pragma once

#include <QByteArray>
#include <QString>

// File names as the file system gives them: bytes, mostly UTF-8 but not
// always (a name copied from an old disk, a Latin-1 archive). Qt drops or
// mangles names that are not UTF-8, so the library carries each name as a
// QString in which every byte that is not part of valid UTF-8 stands as the
// lone surrogate U+DC80 + (byte - 0x80). Decoded text never holds such a
// code point, so the way back to the bytes is exact, and the store keeps the
// bytes themselves.
namespace FileNames {

QString decode(const QByteArray& bytes);
QByteArray encode(const QString& name);
// The name shown to a person: each byte that was not UTF-8 becomes U+FFFD.
QString display(const QString& name);
// The file:// uri of an absolute path, its bytes percent-encoded.
QString uriOf(const QString& path);

} // namespace FileNames
