#pragma once

#include "LibraryEntry.h"

#include "CMPath.h"

// The paths the module answers. Containers and tracks are "<kind>/<id>"
// below the prefix (library:/album/7, library:/track/42).
namespace LibraryPaths {

inline const QString Prefix = QStringLiteral("library");
// Parameter names: the query of a search, the path and title a menu is for.
inline const QString Query = QStringLiteral("q");
inline const QString ItemId = QStringLiteral("itemid");
inline const QString Title = QStringLiteral("title");

CMPath at(const QString& path);
inline CMPath root() { return at(QStringLiteral("/root")); }
inline CMPath scan() { return at(QStringLiteral("/scan")); }
inline CMPath rescan() { return at(QStringLiteral("/rescan")); }
inline CMPath prepareItems() { return at(QStringLiteral("/prepare-items")); }
inline CMPath search() { return at(QStringLiteral("/search")); }
inline CMPath menu() { return at(QStringLiteral("/menu")); }

// "artist", "album", "genre", "folder", "track".
QString segmentOf(EntryKind kind);
CMPath of(EntryKind kind, qint64 id);
// The kind and id a "<kind>/<id>" path names; false for any other path.
bool parse(const CMPath& path, EntryKind* kind, qint64* id);

} // namespace LibraryPaths
