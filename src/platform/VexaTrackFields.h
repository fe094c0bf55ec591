#pragma once

#include "VexaGlobal.h"

#include <QString>

// What a playlist keeps of a track, read from the JSON text of its roles: the
// title, whether the type is audio, the icon and the path; the meta data's
// artist, album, genre, service id and pre-play path; the first resource's
// uri and duration. Roles that are not JSON leave every field empty.
struct VEXA_API VexaTrackFields
{
    QString title;
    bool audio = false;
    QString icon;
    QString path;
    QString artist;
    QString album;
    QString genre;
    QString serviceId;
    QString prePlayPath;
    bool hasResource = false;
    QString uri;
    int duration = 0;

    // Reads the usual roles straight from the text, making strings only of
    // the fields above; an add of thousands of tracks reads as many roles.
    // Anything unusual is read through the JSON reader and the roles' types.
    static VexaTrackFields read(const QString& rolesJson);
    // The same fields, always through the JSON reader and the roles' types:
    // what read() gives for every text.
    static VexaTrackFields readThroughRoles(const QString& rolesJson);

    bool operator==(const VexaTrackFields& other) const;
};
