#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// What the scan learns from one audio file.
struct TrackTags
{
    QString title;
    QString artist;
    QString albumArtist;
    QString album;
    QString genre;
    int trackNumber = 0;
    int discNumber = 0;
    int year = 0;
    int durationSeconds = 0;
    QString mimeType;
    // The embedded picture as stored in the file (front cover first); empty when none.
    QByteArray picture;

    // Reads path with TagLib; nothing when TagLib does not take it as audio
    // (not audio, truncated, no stream properties).
    static std::optional<TrackTags> read(const QString& path);
};
