#pragma once

#include "LibraryStore.h"

#include "CMPath.h"

#include <optional>

// What each path of the browse tree lists, read from the store: the one
// place that knows the tree's shape, for the rows a client pages through and
// for the tracks prepare-items expands a container to.
class Browser
{
public:
    // A list is made of sections (a folder: its folders, then its tracks),
    // paged through as one.
    struct Section
    {
        ListKind kind;
        QVariant key;
    };
    struct Listing
    {
        QString title;
        QList<Section> sections;
    };

    // root: the scanned folder, whose content "Folders" lists.
    Browser(LibraryStore* store, const QString& root);
    void setRoot(const QString& root) { m_root = root; }

    // The list at path; nothing when path names no list (or a track).
    std::optional<Listing> listingOf(const CMPath& path) const;
    // Whether path names a list or a track the library holds.
    bool holds(const CMPath& path) const;
    // The artist, album, genre, folder or track at path, as its row shows it;
    // nothing when path names none.
    std::optional<LibraryEntry> entryOf(const CMPath& path) const;
    int count(const Listing& listing) const;
    // Rows from..to (both included, already within the count).
    QList<LibraryEntry> page(const Listing& listing, int from, int to) const;
    // The tracks of paths in browse order, containers expanded; paths that
    // name nothing give nothing.
    QList<LibraryEntry> tracksOf(const QStringList& paths) const;

private:
    std::optional<Listing> containerListing(EntryKind kind, qint64 id) const;
    void expand(const CMPath& path, QList<LibraryEntry>* tracks) const;

    LibraryStore* m_store;
    QString m_root;
};
