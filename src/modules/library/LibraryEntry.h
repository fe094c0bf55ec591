#pragma once

#include <QString>

// What a row of the library is: a container of tracks, or a track.
enum class EntryKind { Artist, Album, Genre, Folder, Track };

// One row of a list the store gives: a container with its title, or a track
// with everything its roles and its playlist record need.
struct LibraryEntry
{
    EntryKind kind = EntryKind::Track;
    qint64 id = 0;
    QString title;
    // The thumbnail's file name, when the entry has a picture.
    QString artwork;
    // Tracks only.
    QString file;
    QString artist;
    QString album;
    QString genre;
    QString mimeType;
    int durationSeconds = 0;
};
