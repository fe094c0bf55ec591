#pragma once

#include "CMPath.h"

// The places of the playlists module, the settings it reads and the state it
// watches. Modules use these functions and never spell the paths themselves.

VEXA_API CMPath VexaPlayListsRootPath();
VEXA_API CMPath VexaPlayListsPlayLogicPath();
VEXA_API CMPath VexaPlayListItemPath();
VEXA_API CMPath VexaPlayListPlGetlistPath();
VEXA_API CMPath VexaPlayListPlGetItemsPath();
VEXA_API CMPath VexaPlayListPqGetItemsPath();
VEXA_API CMPath VexaPlayListClGetItemsPath();
VEXA_API CMPath VexaPlayListPlContextPath();
VEXA_API CMPath VexaPlayListPqContextPath();
VEXA_API CMPath VexaPlayListClContextPath();
VEXA_API CMPath VexaPlayListPlTrackContextPath();
VEXA_API CMPath VexaPlayListPlAddToPlaylistPath();
VEXA_API CMPath VexaPlayListPlSelectAddModePath();
VEXA_API CMPath VexaPlayListClAddtoCollectionPath();

VEXA_API CMPath VexaPlayListPlCreatePath();
VEXA_API CMPath VexaPlayListPlDeletePath();
VEXA_API CMPath VexaPlayListPlSetNamePath();
VEXA_API CMPath VexaPlayListPlSetShufflePath();
VEXA_API CMPath VexaPlayListPlSetRepeatPath();
VEXA_API CMPath VexaPlayListPlClearPath();
VEXA_API CMPath VexaPlayListPlPlayPath();
VEXA_API CMPath VexaPlayListPlAddItemsPath();
VEXA_API CMPath VexaPlayListPlAddExternalItemsPath();
VEXA_API CMPath VexaPlayListPlRemoveItemsPath();
VEXA_API CMPath VexaPlayListPlMoveItemspath();
VEXA_API CMPath VexaPlayListPlPrepareItemsPath();
VEXA_API CMPath VexaPlayListClCreatePath();
VEXA_API CMPath VexaPlayListClDeletePath();
VEXA_API CMPath VexaPlayListClAddItemPath();
VEXA_API CMPath VexaPlayListClRemoveItemPath();

// The path, below any module's prefix, at which that module prepares its own
// content paths as item records.
VEXA_API QString VexaPlayListPrepareItems();

VEXA_API CMPath VexaPlayListSettingsPlayqueueVisibilityPath();
VEXA_API CMPath VexaPlayListSettingsCollectionsVisibilityPath();
VEXA_API CMPath VexaPlayListsSettingsDataBaseItemsLimitPath();
VEXA_API CMPath VexaPlayListSettingsDataBaseVacuumPath();
VEXA_API CMPath VexaLanguageSettingsPath();
VEXA_API CMPath VexaPowerManagerTargetPath();

// Below this many milliseconds of play, "previous" goes to the previous track
// instead of restarting the current one.
VEXA_API int VexaPreviousTrackTimeLimit();
