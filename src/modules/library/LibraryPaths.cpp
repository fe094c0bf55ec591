#include "LibraryPaths.h"

namespace LibraryPaths {

CMPath at(const QString& path)
{
    CMPath result = CMPath::fromPrefix(Prefix);
    result.setPath(path);
    return result;
}

QString segmentOf(EntryKind kind)
{
    switch (kind) {
    case EntryKind::Artist:
        return QStringLiteral("artist");
    case EntryKind::Album:
        return QStringLiteral("album");
    case EntryKind::Genre:
        return QStringLiteral("genre");
    case EntryKind::Folder:
        return QStringLiteral("folder");
    case EntryKind::Track:
        break;
    }
    return QStringLiteral("track");
}

CMPath of(EntryKind kind, qint64 id)
{
    return at(QLatin1Char('/') + segmentOf(kind) + QLatin1Char('/') + QString::number(id));
}

bool parse(const CMPath& path, EntryKind* kind, qint64* id)
{
    const QStringList parts = path.splitBase();
    if (path.prefix() != Prefix || parts.size() != 2)
        return false;
    bool ok = false;
    *id = parts.at(1).toLongLong(&ok, 10);
    if (!ok || *id <= 0)
        return false;
    for (EntryKind candidate : {EntryKind::Artist, EntryKind::Album, EntryKind::Genre, EntryKind::Folder, EntryKind::Track}) {
        if (segmentOf(candidate) == parts.at(0)) {
            *kind = candidate;
            return true;
        }
    }
    return false;
}

} // namespace LibraryPaths
