#include "LibraryRoles.h"

#include "Artwork.h"
#include "FileNames.h"
#include "LibraryPaths.h"

#include "VexaJson.h"
#include "VexaMediaData.h"


namespace LibraryRoles {

VexaRoles trackRoles(const LibraryEntry& track)
{
    VexaRoles roles;
    roles.setTitle(track.title);
    roles.setType(VexaRolesType::Audio);
    roles.setPath(LibraryPaths::of(EntryKind::Track, track.id));
    roles.setId(QString::number(track.id));
    VexaMediaResource resource;
    resource.setUri(FileNames::uriOf(track.file));
    resource.setDuration(track.durationSeconds);
    if (!track.mimeType.isEmpty())
        resource.setMimeType(track.mimeType);
    VexaMetaData meta;
    meta.setArtist(track.artist);
    meta.setAlbum(track.album);
    if (!track.genre.isEmpty())
        meta.setGenre(track.genre);
    meta.setServiceId(LibraryPaths::Prefix);
    VexaMediaData media;
    media.setResources({resource});
    media.setMetaData(meta);
    roles.setMediaData(media);
    if (!track.artwork.isEmpty())
        roles.setIcon(Artwork::urlOf(track.artwork));
    return roles;
}

VexaRoles rowOf(const LibraryEntry& entry)
{
    const CMPath path = LibraryPaths::of(entry.kind, entry.id);
    VexaRoles roles;
    if (entry.kind == EntryKind::Track) {
        roles = trackRoles(entry);
    } else {
        roles.setTitle(entry.title);
        roles.setType(VexaRolesType::Container);
        roles.setPath(path);
        if (!entry.artwork.isEmpty())
            roles.setIcon(Artwork::urlOf(entry.artwork));
    }
    roles.setContext(menuOf(entry.title, path));
    return roles;
}

VexaPlayListItem itemOf(const LibraryEntry& track)
{
    const VexaRoles roles = trackRoles(track);
    VexaPlayListItem item;
    item.setVexaRoles(QString::fromUtf8(VexaJson::toJson(roles.toVariant())));
    item.fillFromRoles();
    return item;
}

VexaRoles menuOf(const QString& title, const CMPath& path)
{
    VexaRoles roles;
    roles.setTitle(title);
    roles.setPath(LibraryPaths::menu()
                      .withParam(LibraryPaths::ItemId, path.toEncoded())
                      .withParam(LibraryPaths::Title, title));
    roles.setType(VexaRolesType::Container);
    roles.setContainerType(VexaRolesContainerType::ContextMenu);
    return roles;
}

} // namespace LibraryRoles
