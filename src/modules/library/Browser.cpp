#include "Browser.h"

#include "LibraryPaths.h"
#include "SearchText.h"

#include "Language.h"

namespace {

// More than any playlist takes: an expansion stops here.
constexpr int MaxExpandedTracks = 100000;

} // namespace

Browser::Browser(LibraryStore* store, const QString& root) : m_store(store), m_root(root) {}

std::optional<Browser::Listing> Browser::listingOf(const CMPath& path) const
{
    if (path.prefix() != LibraryPaths::Prefix)
        return std::nullopt;
    const QString name = path.path();
    if (name == QLatin1String("/artists"))
        return Listing{VEXA_TR("Artists"), {{ListKind::Artists, QVariant()}}};
    if (name == QLatin1String("/albums"))
        return Listing{VEXA_TR("Albums"), {{ListKind::Albums, QVariant()}}};
    if (name == QLatin1String("/genres"))
        return Listing{VEXA_TR("Genres"), {{ListKind::Genres, QVariant()}}};
    if (name == QLatin1String("/tracks"))
        return Listing{VEXA_TR("All tracks"), {{ListKind::Tracks, QVariant()}}};
    if (name == QLatin1String("/folders")) {
        const qint64 top = m_store->rootFolder(m_root);
        Listing listing{VEXA_TR("Folders"), {}};
        if (top)
            listing.sections = {{ListKind::FolderFolders, top}, {ListKind::FolderTracks, top}};
        return listing;
    }
    if (name == QLatin1String("/search")) {
        const QString query = SearchText::fold(path.param(LibraryPaths::Query));
        Listing listing{VEXA_TR("Search"), {}};
        if (!query.trimmed().isEmpty())
            listing.sections = {{ListKind::SearchArtists, query}, {ListKind::SearchAlbums, query}, {ListKind::SearchTracks, query}};
        return listing;
    }
    EntryKind kind;
    qint64 id = 0;
    if (!LibraryPaths::parse(path, &kind, &id))
        return std::nullopt;
    return containerListing(kind, id);
}

std::optional<Browser::Listing> Browser::containerListing(EntryKind kind, qint64 id) const
{
    if (kind == EntryKind::Track)
        return std::nullopt;
    const QString title = m_store->nameOf(kind, id);
    if (title.isNull())
        return std::nullopt;
    switch (kind) {
    case EntryKind::Artist:
        return Listing{title, {{ListKind::ArtistAlbums, id}}};
    case EntryKind::Album:
        return Listing{title, {{ListKind::AlbumTracks, id}}};
    case EntryKind::Genre:
        return Listing{title, {{ListKind::GenreArtists, id}}};
    case EntryKind::Folder:
    case EntryKind::Track:
        break;
    }
    return Listing{title, {{ListKind::FolderFolders, id}, {ListKind::FolderTracks, id}}};
}

bool Browser::holds(const CMPath& path) const
{
    EntryKind kind;
    qint64 id = 0;
    if (LibraryPaths::parse(path, &kind, &id) && kind == EntryKind::Track)
        return m_store->track(id).has_value();
    return listingOf(path).has_value();
}

std::optional<LibraryEntry> Browser::entryOf(const CMPath& path) const
{
    EntryKind kind;
    qint64 id = 0;
    if (!LibraryPaths::parse(path, &kind, &id))
        return std::nullopt;
    if (kind == EntryKind::Track)
        return m_store->track(id);
    LibraryEntry entry;
    entry.kind = kind;
    entry.id = id;
    entry.title = m_store->nameOf(kind, id);
    if (entry.title.isNull())
        return std::nullopt;
    return entry;
}

int Browser::count(const Listing& listing) const
{
    int total = 0;
    for (const Section& section : listing.sections)
        total += m_store->count(section.kind, section.key);
    return total;
}

QList<LibraryEntry> Browser::page(const Listing& listing, int from, int to) const
{
    QList<LibraryEntry> rows;
    int offset = from;
    int wanted = to - from + 1;
    for (const Section& section : listing.sections) {
        if (wanted <= 0)
            break;
        const int size = m_store->count(section.kind, section.key);
        if (offset >= size) {
            offset -= size;
            continue;
        }
        const QList<LibraryEntry> part = m_store->list(section.kind, section.key, offset, qMin(wanted, size - offset));
        rows += part;
        wanted -= part.size();
        offset = 0;
    }
    return rows;
}

QList<LibraryEntry> Browser::tracksOf(const QStringList& paths) const
{
    QList<LibraryEntry> tracks;
    for (const QString& path : paths)
        expand(CMPath(path), &tracks);
    return tracks;
}

void Browser::expand(const CMPath& path, QList<LibraryEntry>* tracks) const
{
    EntryKind kind;
    qint64 id = 0;
    const bool named = LibraryPaths::parse(path, &kind, &id);
    if (named && kind == EntryKind::Track) {
        if (const std::optional<LibraryEntry> track = m_store->track(id))
            tracks->append(*track);
        return;
    }
    // A genre plays its own tracks, not everything its artists made.
    std::optional<Listing> listing;
    if (named && kind == EntryKind::Genre && !m_store->nameOf(kind, id).isNull())
        listing = Listing{QString(), {{ListKind::GenreTracks, id}}};
    else
        listing = listingOf(path);
    if (!listing)
        return;
    for (const Section& section : listing->sections) {
        for (const LibraryEntry& entry : m_store->list(section.kind, section.key, 0, -1)) {
            if (tracks->size() >= MaxExpandedTracks)
                return;
            if (entry.kind == EntryKind::Track)
                tracks->append(entry);
            else
                expand(LibraryPaths::of(entry.kind, entry.id), tracks);
        }
    }
}
