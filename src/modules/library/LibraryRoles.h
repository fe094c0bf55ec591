#pragma once

#include "LibraryEntry.h"

#include "VexaPlayListItem.h"
#include "VexaRoles.h"

// How the library's entries look to clients and to the Playlists module.
namespace LibraryRoles {

// A row of a list: a container that opens, or a playable track; both with
// their menu as context.
VexaRoles rowOf(const LibraryEntry& entry);
// A track's roles as a playlist keeps them: everything to play it, no menu.
VexaRoles trackRoles(const LibraryEntry& track);
// The record prepare-items answers for a track.
VexaPlayListItem itemOf(const LibraryEntry& track);
// The context-menu roles of the entry at path.
VexaRoles menuOf(const QString& title, const CMPath& path);

} // namespace LibraryRoles
