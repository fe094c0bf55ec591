<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>Controller</name>
    <message>
        <source>Could not create playlist.</source>
        <translation>Die Playlist konnte nicht erstellt werden.</translation>
    </message>
    <message>
        <source>Could not create collection.</source>
        <translation>Die Sammlung konnte nicht erstellt werden.</translation>
    </message>
    <message>
        <source>Could not delete collection.</source>
        <translation>Die Sammlung konnte nicht gelöscht werden.</translation>
    </message>
    <message>
        <source>Could not set playlist name.</source>
        <translation>Der Name der Playlist konnte nicht gesetzt werden.</translation>
    </message>
    <message>
        <source>Could not set shuffle mode on playlist.</source>
        <translation>Der Zufallsmodus der Playlist konnte nicht gesetzt werden.</translation>
    </message>
    <message>
        <source>Could not set repeat mode on playlist.</source>
        <translation>Der Wiederholmodus der Playlist konnte nicht gesetzt werden.</translation>
    </message>
    <message>
        <source>Could not delete playlist.</source>
        <translation>Die Playlist konnte nicht gelöscht werden.</translation>
    </message>
    <message>
        <source>Could not add items to collection.</source>
        <translation>Es konnte nichts zur Sammlung hinzugefügt werden.</translation>
    </message>
    <message>
        <source>Could not remove items from collection.</source>
        <translation>Es konnte nichts aus der Sammlung entfernt werden.</translation>
    </message>
    <message>
        <source>Could not clear playlist.</source>
        <translation>Die Playlist konnte nicht geleert werden.</translation>
    </message>
    <message>
        <source>Could not move items in playlist.</source>
        <translation>Titel der Playlist konnten nicht verschoben werden.</translation>
    </message>
    <message>
        <source>Could not remove items from playlist.</source>
        <translation>Titel konnten nicht aus der Playlist entfernt werden.</translation>
    </message>
    <message>
        <source>Could not start playback on playlist.</source>
        <translation>Die Wiedergabe der Playlist konnte nicht gestartet werden.</translation>
    </message>
    <message>
        <source>Could not add items to playlist.</source>
        <translation>Titel konnten nicht zur Playlist hinzugefügt werden.</translation>
    </message>
    <message>
        <source>Could not add external items to playlist.</source>
        <translation>Externe Titel konnten nicht zur Playlist hinzugefügt werden.</translation>
    </message>
    <message>
        <source>Please provide a non-empty string as field.</source>
        <translation>Bitte geben Sie für das Feld einen nicht leeren Text an.</translation>
    </message>
    <message>
        <source>There is no playlist with this ID.</source>
        <translation>Es gibt keine Playlist mit dieser ID.</translation>
    </message>
    <message>
        <source>Cannot find playlist with invalid ID.</source>
        <translation>Eine Playlist mit ungültiger ID kann nicht gefunden werden.</translation>
    </message>
    <message>
        <source>Create playlist error.</source>
        <translation>Fehler beim Erstellen der Playlist.</translation>
    </message>
    <message>
        <source>Create collection error.</source>
        <translation>Fehler beim Erstellen der Sammlung.</translation>
    </message>
    <message>
        <source>There is no collection with this ID.</source>
        <translation>Es gibt keine Sammlung mit dieser ID.</translation>
    </message>
    <message>
        <source>Delete collection failed</source>
        <translation>Löschen der Sammlung fehlgeschlagen</translation>
    </message>
    <message>
        <source>Cannot rename PlayQueue.</source>
        <translation>Die Warteschlange kann nicht umbenannt werden.</translation>
    </message>
    <message>
        <source>Invalid shuffle mode.</source>
        <translation>Ungültiger Zufallsmodus.</translation>
    </message>
    <message>
        <source>Invalid repeat mode.</source>
        <translation>Ungültiger Wiederholmodus.</translation>
    </message>
    <message>
        <source>Cannot delete PlayQueue.</source>
        <translation>Die Warteschlange kann nicht gelöscht werden.</translation>
    </message>
    <message>
        <source>Delete playlist error.</source>
        <translation>Fehler beim Löschen der Playlist.</translation>
    </message>
    <message>
        <source>Add playlist to collection failed.</source>
        <translation>Hinzufügen der Playlist zur Sammlung fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Remove playlist from collection failed.</source>
        <translation>Entfernen der Playlist aus der Sammlung fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Clear playlist failed.</source>
        <translation>Leeren der Playlist fehlgeschlagen.</translation>
    </message>
    <message>
        <source>Please select one or more items to move.</source>
        <translation>Bitte wählen Sie einen oder mehrere Titel zum Verschieben aus.</translation>
    </message>
    <message>
        <source>Cannot move items to negative position.</source>
        <translation>Titel können nicht an eine negative Position verschoben werden.</translation>
    </message>
    <message>
        <source>Cannot move items, sequence number is not in valid range.</source>
        <translation>Titel können nicht verschoben werden, die Position liegt außerhalb des gültigen Bereichs.</translation>
    </message>
    <message>
        <source>Move items failed</source>
        <translation>Verschieben der Titel fehlgeschlagen</translation>
    </message>
    <message>
        <source>Please select one or more items to remove.</source>
        <translation>Bitte wählen Sie einen oder mehrere Titel zum Entfernen aus.</translation>
    </message>
    <message>
        <source>Remove items failed</source>
        <translation>Entfernen der Titel fehlgeschlagen</translation>
    </message>
    <message>
        <source>There are no items in the playlist.</source>
        <translation>Die Playlist enthält keine Titel.</translation>
    </message>
    <message>
        <source>Cannot get first item</source>
        <translation>Der erste Titel kann nicht gelesen werden</translation>
    </message>
    <message>
        <source>Please select one or more items to add.</source>
        <translation>Bitte wählen Sie einen oder mehrere Titel zum Hinzufügen aus.</translation>
    </message>
    <message>
        <source>Cannot add a playlist to itself.</source>
        <translation>Eine Wiedergabeliste kann nicht zu sich selbst hinzugefügt werden.</translation>
    </message>
    <message>
        <source>No items were added.</source>
        <translation>Es wurden keine Titel hinzugefügt.</translation>
    </message>
    <message>
        <source>Cannot get last sequence number.</source>
        <translation>Die letzte Position kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>Cannot get last item.</source>
        <translation>Der letzte Titel kann nicht gelesen werden.</translation>
    </message>
    <message>
        <source>No playitem found.</source>
        <translation>Kein abspielbarer Titel gefunden.</translation>
    </message>
    <message>
        <source>Unable to add more items to the playlist.</source>
        <translation>Der Playlist können keine weiteren Titel hinzugefügt werden.</translation>
    </message>
    <message>
        <source>Items reached limit.</source>
        <translation>Die Höchstzahl an Titeln ist erreicht.</translation>
    </message>
    <message>
        <source>%1 items added.</source>
        <translation>%1 Titel hinzugefügt.</translation>
    </message>
    <message>
        <source>Playlist created successfully.</source>
        <translation>Playlist erfolgreich erstellt.</translation>
    </message>
    <message>
        <source>Collection created successfully.</source>
        <translation>Sammlung erfolgreich erstellt.</translation>
    </message>
    <message>
        <source>Collection deleted successfully.</source>
        <translation>Sammlung erfolgreich gelöscht.</translation>
    </message>
    <message>
        <source>Playlist renamed successfully.</source>
        <translation>Playlist erfolgreich umbenannt.</translation>
    </message>
    <message>
        <source>Playlist shuffle mode changed successfully.</source>
        <translation>Zufallsmodus der Playlist erfolgreich geändert.</translation>
    </message>
    <message>
        <source>Playlist repeat mode changed successfully.</source>
        <translation>Wiederholmodus der Playlist erfolgreich geändert.</translation>
    </message>
    <message>
        <source>Playlist deleted successfully.</source>
        <translation>Playlist erfolgreich gelöscht.</translation>
    </message>
    <message>
        <source>Items added successfully to collection.</source>
        <translation>Erfolgreich zur Sammlung hinzugefügt.</translation>
    </message>
    <message>
        <source>Playlist removed successfully from collection.</source>
        <translation>Playlist erfolgreich aus der Sammlung entfernt.</translation>
    </message>
    <message>
        <source>Playlist cleared successfully.</source>
        <translation>Playlist erfolgreich geleert.</translation>
    </message>
    <message>
        <source>Items removed successfully from playlist.</source>
        <translation>Titel erfolgreich aus der Playlist entfernt.</translation>
    </message>
    <message>
        <source>Playback started successfully on playlist.</source>
        <translation>Wiedergabe der Playlist erfolgreich gestartet.</translation>
    </message>
    <message>
        <source>Items added successfully to playlist.</source>
        <translation>Titel erfolgreich zur Playlist hinzugefügt.</translation>
    </message>
</context>
<context>
    <name>PlayListPlayLogic</name>
    <message>
        <source>Play called on invalid playlist container</source>
        <translation>Wiedergabe für einen ungültigen Playlist-Container angefordert</translation>
    </message>
</context>
<context>
    <name>PlayLists</name>
    <message>
        <source>Playlists</source>
        <translation>Playlists</translation>
    </message>
    <message>
        <source>Collections</source>
        <translation>Sammlungen</translation>
    </message>
</context>
<context>
    <name>RootNode</name>
    <message>
        <source>Playlists</source>
        <translation>Playlists</translation>
    </message>
    <message>
        <source>Create New Playlist</source>
        <translation>Neue Playlist erstellen</translation>
    </message>
    <message>
        <source>Playlist Context Menu</source>
        <translation>Playlist-Kontextmenü</translation>
    </message>
    <message>
        <source>Create New Collection</source>
        <translation>Neue Sammlung erstellen</translation>
    </message>
    <message>
        <source>Collection Context Menu</source>
        <translation>Sammlungs-Kontextmenü</translation>
    </message>
</context>
<context>
    <name>PlayListGetListNode</name>
    <message>
        <source>Playlists</source>
        <translation>Playlists</translation>
    </message>
    <message>
        <source>Create new playlist</source>
        <translation>Neue Playlist erstellen</translation>
    </message>
    <message>
        <source>Playlist Context Menu</source>
        <translation>Playlist-Kontextmenü</translation>
    </message>
</context>
<context>
    <name>PlayListGetItemsNode</name>
    <message>
        <source>Playlist</source>
        <translation>Playlist</translation>
    </message>
</context>
<context>
    <name>PlayQueueGetItemsNode</name>
    <message>
        <source>PlayQueue tracks</source>
        <translation>Titel der Warteschlange</translation>
    </message>
</context>
<context>
    <name>CollectionGetItemsNode</name>
    <message>
        <source>Collection - </source>
        <translation>Sammlung - </translation>
    </message>
    <message>
        <source>Playlist</source>
        <translation>Playlist</translation>
    </message>
</context>
<context>
    <name>PlayListContextNode</name>
    <message>
        <source>Playlist Context Menu</source>
        <translation>Playlist-Kontextmenü</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Set shuffle mode</source>
        <translation>Zufallsmodus setzen</translation>
    </message>
    <message>
        <source>Set repeat mode</source>
        <translation>Wiederholmodus setzen</translation>
    </message>
    <message>
        <source>Merge with playlist</source>
        <translation>Mit Playlist zusammenführen</translation>
    </message>
    <message>
        <source>Add to collection</source>
        <translation>Zur Sammlung hinzufügen</translation>
    </message>
    <message>
        <source>Remove from collection</source>
        <translation>Aus der Sammlung entfernen</translation>
    </message>
    <message>
        <source>Clear playlist</source>
        <translation>Playlist leeren</translation>
    </message>
    <message>
        <source>Delete playlist</source>
        <translation>Playlist löschen</translation>
    </message>
</context>
<context>
    <name>PlayListTrackContextNode</name>
    <message>
        <source>Track Context Menu</source>
        <translation>Titel-Kontextmenü</translation>
    </message>
    <message>
        <source>Add to playqueue</source>
        <translation>Zur Warteschlange hinzufügen</translation>
    </message>
    <message>
        <source>Add to playlist</source>
        <translation>Zur Playlist hinzufügen</translation>
    </message>
    <message>
        <source>Move track</source>
        <translation>Titel verschieben</translation>
    </message>
    <message>
        <source>Remove track</source>
        <translation>Titel entfernen</translation>
    </message>
</context>
<context>
    <name>PlayListAddToPlaylistNode</name>
    <message>
        <source>Playlists</source>
        <translation>Playlists</translation>
    </message>
    <message>
        <source>Create new playlist</source>
        <translation>Neue Playlist erstellen</translation>
    </message>
</context>
<context>
    <name>PlayListAddModeNode</name>
    <message>
        <source>Playlists</source>
        <translation>Playlists</translation>
    </message>
    <message>
        <source>Now</source>
        <translation>Jetzt</translation>
    </message>
    <message>
        <source>After current</source>
        <translation>Nach dem aktuellen Titel</translation>
    </message>
    <message>
        <source>Append</source>
        <translation>Anhängen</translation>
    </message>
</context>
<context>
    <name>CollectionAddToClNode</name>
    <message>
        <source>Add playlist to collection</source>
        <translation>Playlist zur Sammlung hinzufügen</translation>
    </message>
    <message>
        <source>Create new collection</source>
        <translation>Neue Sammlung erstellen</translation>
    </message>
</context>
<context>
    <name>CollectionContextNode</name>
    <message>
        <source>Collection Context Menu</source>
        <translation>Sammlungs-Kontextmenü</translation>
    </message>
    <message>
        <source>Delete collection</source>
        <translation>Sammlung löschen</translation>
    </message>
</context>
<context>
    <name>PlayQueueContextNode</name>
    <message>
        <source>PlayQueue Context Menu</source>
        <translation>Warteschlangen-Kontextmenü</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>Abspielen</translation>
    </message>
    <message>
        <source>Merge with playlist</source>
        <translation>Mit Playlist zusammenführen</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
</context>
</TS>
