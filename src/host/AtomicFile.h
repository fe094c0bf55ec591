#pragma once

#include <QByteArray>
#include <QString>

// Replaces a file's content so that a crash at any moment leaves either the
// old or the new content: a temporary file beside it is written and synced,
// then renamed over it, and the folder is synced.
class AtomicFile
{
public:
    static bool write(const QString& path, const QByteArray& content, QString* error);
};
