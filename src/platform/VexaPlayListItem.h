#pragma once

#include "VexaGlobal.h"

#include <QMetaType>
#include <QString>
#include <QVariant>

// One track as a playlist stores it. A plain value: the store reads and writes
// thousands of these at a time.
class VEXA_API VexaPlayListItem
{
public:
    VexaPlayListItem() = default;
    // Reads the record form; fields that are missing are filled from the
    // track's roles in vexaRoles (see fillFromRoles).
    static VexaPlayListItem fromHash(const QVariantHash& hash);
    QVariantHash toHash() const;

    int uid() const { return m_uid; }
    void setUid(int v) { m_uid = v; }
    int sequenceNumber() const { return m_sequenceNumber; }
    void setSequenceNumber(int v) { m_sequenceNumber = v; }
    QString title() const { return m_title; }
    void setTitle(const QString& v) { m_title = v; }
    QString artist() const { return m_artist; }
    void setArtist(const QString& v) { m_artist = v; }
    QString album() const { return m_album; }
    void setAlbum(const QString& v) { m_album = v; }
    QString artworkUrl() const { return m_artworkUrl; }
    void setArtworkUrl(const QString& v) { m_artworkUrl = v; }
    QString genre() const { return m_genre; }
    void setGenre(const QString& v) { m_genre = v; }
    int durationSeconds() const { return m_durationSeconds; }
    void setDurationSeconds(int v) { m_durationSeconds = v; }
    QString url() const { return m_url; }
    void setUrl(const QString& v) { m_url = v; }
    QString serviceId() const { return m_serviceId; }
    void setServiceId(const QString& v) { m_serviceId = v; }
    QString vexaRoles() const { return m_vexaRoles; }
    void setVexaRoles(const QString& v) { m_vexaRoles = v; }

    // Fills every empty field from the roles held as JSON text in vexaRoles:
    // title from title; artist, album, genre and serviceId from the meta data;
    // artworkUrl from icon; durationSeconds and url from the first resource,
    // url falling back to the roles' path.
    void fillFromRoles();
    // Whether the roles, as fillFromRoles last read them, describe a track
    // that can be played: a title, the audio type, and a first resource with
    // a uri or a pre-play path in the meta data. Read once with the fields,
    // so that an add of thousands of tracks parses each track's roles once.
    bool rolesDescribePlayableTrack() const { return m_playableTrack; }

    bool operator==(const VexaPlayListItem& other) const;

private:
    int m_uid = -1;
    int m_sequenceNumber = -1;
    QString m_title;
    QString m_artist;
    QString m_album;
    QString m_artworkUrl;
    QString m_genre;
    int m_durationSeconds = 0;
    QString m_url;
    QString m_serviceId;
    QString m_vexaRoles;
    bool m_playableTrack = false;
};

VEXA_API QDebug operator<<(QDebug debug, const VexaPlayListItem& item);

Q_DECLARE_METATYPE(VexaPlayListItem)
