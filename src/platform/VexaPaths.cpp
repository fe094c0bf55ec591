#include "VexaPaths.h"

CMPath VexaPlayListsRootPath() { return CMPath(QStringLiteral("playlists:/root")); }
CMPath VexaPlayListsPlayLogicPath() { return CMPath(QStringLiteral("playlists:/playlogic")); }
CMPath VexaPlayListItemPath() { return CMPath(QStringLiteral("playlists:/item")); }
CMPath VexaPlayListPlGetlistPath() { return CMPath(QStringLiteral("playlists:/lists")); }
CMPath VexaPlayListPlGetItemsPath() { return CMPath(QStringLiteral("playlists:/tracks")); }
CMPath VexaPlayListPqGetItemsPath() { return CMPath(QStringLiteral("playlists:/queue")); }
CMPath VexaPlayListClGetItemsPath() { return CMPath(QStringLiteral("playlists:/collection")); }
CMPath VexaPlayListPlContextPath() { return CMPath(QStringLiteral("playlists:/menu/playlist")); }
CMPath VexaPlayListPqContextPath() { return CMPath(QStringLiteral("playlists:/menu/queue")); }
CMPath VexaPlayListClContextPath() { return CMPath(QStringLiteral("playlists:/menu/collection")); }
CMPath VexaPlayListPlTrackContextPath() { return CMPath(QStringLiteral("playlists:/menu/track")); }
CMPath VexaPlayListPlAddToPlaylistPath() { return CMPath(QStringLiteral("playlists:/menu/add-to-playlist")); }
CMPath VexaPlayListPlSelectAddModePath() { return CMPath(QStringLiteral("playlists:/menu/add-mode")); }
CMPath VexaPlayListClAddtoCollectionPath() { return CMPath(QStringLiteral("playlists:/menu/add-to-collection")); }
CMPath VexaPlayListPlCreatePath() { return CMPath(QStringLiteral("playlists:/create-playlist")); }
CMPath VexaPlayListPlDeletePath() { return CMPath(QStringLiteral("playlists:/delete-playlist")); }
CMPath VexaPlayListPlSetNamePath() { return CMPath(QStringLiteral("playlists:/rename-playlist")); }
CMPath VexaPlayListPlSetShufflePath() { return CMPath(QStringLiteral("playlists:/set-shuffle")); }
CMPath VexaPlayListPlSetRepeatPath() { return CMPath(QStringLiteral("playlists:/set-repeat")); }
CMPath VexaPlayListPlClearPath() { return CMPath(QStringLiteral("playlists:/clear-playlist")); }
CMPath VexaPlayListPlPlayPath() { return CMPath(QStringLiteral("playlists:/play-playlist")); }
CMPath VexaPlayListPlAddItemsPath() { return CMPath(QStringLiteral("playlists:/add-items")); }
CMPath VexaPlayListPlAddExternalItemsPath() { return CMPath(QStringLiteral("playlists:/add-external-items")); }
CMPath VexaPlayListPlRemoveItemsPath() { return CMPath(QStringLiteral("playlists:/remove-items")); }
CMPath VexaPlayListPlMoveItemspath() { return CMPath(QStringLiteral("playlists:/move-items")); }
CMPath VexaPlayListPlPrepareItemsPath() { return CMPath(QStringLiteral("playlists:/prepare-items")); }
CMPath VexaPlayListClCreatePath() { return CMPath(QStringLiteral("playlists:/create-collection")); }
CMPath VexaPlayListClDeletePath() { return CMPath(QStringLiteral("playlists:/delete-collection")); }
CMPath VexaPlayListClAddItemPath() { return CMPath(QStringLiteral("playlists:/add-to-collection")); }
CMPath VexaPlayListClRemoveItemPath() { return CMPath(QStringLiteral("playlists:/remove-from-collection")); }
CMPath VexaPlayListSettingsPlayqueueVisibilityPath() { return CMPath(QStringLiteral("settings:/playlists/showQueue")); }
CMPath VexaPlayListSettingsCollectionsVisibilityPath() { return CMPath(QStringLiteral("settings:/playlists/showCollections")); }
CMPath VexaPlayListsSettingsDataBaseItemsLimitPath() { return CMPath(QStringLiteral("settings:/playlists/itemLimit")); }
CMPath VexaPlayListSettingsDataBaseVacuumPath() { return CMPath(QStringLiteral("settings:/playlists/vacuumNeeded")); }
CMPath VexaLanguageSettingsPath() { return CMPath(QStringLiteral("settings:/language")); }
CMPath VexaPowerManagerTargetPath() { return CMPath(QStringLiteral("power:/target")); }
QString VexaPlayListPrepareItems()
{
    return QStringLiteral("/prepare-items");
}

int VexaPreviousTrackTimeLimit()
{
    return 3000;
}
