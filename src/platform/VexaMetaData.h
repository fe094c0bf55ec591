#pragma once

#include "CMPath.h"
#include "VexaHash.h"

// The meta data of a media: who made it and how it is played.
class VEXA_API VexaMetaData : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString PlayLogicPath() { return QStringLiteral("playLogicPath"); }
    static QString Artist() { return QStringLiteral("artist"); }
    static QString Album() { return QStringLiteral("album"); }
    static QString Genre() { return QStringLiteral("genre"); }
    static QString ServiceId() { return QStringLiteral("serviceId"); }
    static QString PrePlayPath() { return QStringLiteral("prePlayPath"); }
    static QString AllowSeekTime() { return QStringLiteral("allowSeekTime"); }
    static QString AllowSeekBytes() { return QStringLiteral("allowSeekBytes"); }

    CMPath playLogicPath() const { return CMPath(stringValue(PlayLogicPath())); }
    void setPlayLogicPath(const CMPath& path) { insert(PlayLogicPath(), path.toEncoded()); }
    QString artist() const { return stringValue(Artist()); }
    void setArtist(const QString& v) { insert(Artist(), v); }
    QString album() const { return stringValue(Album()); }
    void setAlbum(const QString& v) { insert(Album(), v); }
    QString genre() const { return stringValue(Genre()); }
    void setGenre(const QString& v) { insert(Genre(), v); }
    QString serviceId() const { return stringValue(ServiceId()); }
    void setServiceId(const QString& v) { insert(ServiceId(), v); }
    CMPath prePlayPath() const { return CMPath(stringValue(PrePlayPath())); }
    void setPrePlayPath(const CMPath& path) { insert(PrePlayPath(), path.toEncoded()); }
    bool allowSeekTime() const { return boolValue(AllowSeekTime()); }
    void setAllowSeekTime(bool v) { insert(AllowSeekTime(), v); }
    bool allowSeekBytes() const { return boolValue(AllowSeekBytes()); }
    void setAllowSeekBytes(bool v) { insert(AllowSeekBytes(), v); }
};
