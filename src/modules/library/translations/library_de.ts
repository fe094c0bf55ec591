<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name>Browser</name>
    <message><source>Artists</source><translation>Interpreten</translation></message>
    <message><source>Albums</source><translation>Alben</translation></message>
    <message><source>Genres</source><translation>Genres</translation></message>
    <message><source>Folders</source><translation>Ordner</translation></message>
    <message><source>All tracks</source><translation>Alle Titel</translation></message>
    <message><source>Search</source><translation>Suche</translation></message>
</context>
<context>
    <name>RootNode</name>
    <message><source>Search</source><translation>Suche</translation></message>
    <message><source>Library</source><translation>Bibliothek</translation></message>
</context>
<context>
    <name>MenuNode</name>
    <message><source>Add to play queue</source><translation>Zur Warteschlange hinzufügen</translation></message>
    <message><source>Add to playlist</source><translation>Zur Playlist hinzufügen</translation></message>
    <message><source>Context menu</source><translation>Kontextmenü</translation></message>
</context>
</TS>
