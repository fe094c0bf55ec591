#include "VexaPlayListItem.h"

#include "VexaJson.h"
#include "VexaTrackFields.h"
#include "VexaVariant.h"

#include <QDebug>

namespace {

const QString kUid = QStringLiteral("uid");
const QString kSequenceNumber = QStringLiteral("sequenceNumber");
const QString kTitle = QStringLiteral("title");
const QString kArtist = QStringLiteral("artist");
const QString kAlbum = QStringLiteral("album");
const QString kArtworkUrl = QStringLiteral("artworkUrl");
const QString kGenre = QStringLiteral("genre");
const QString kDurationSeconds = QStringLiteral("durationSeconds");
const QString kUrl = QStringLiteral("url");
const QString kServiceId = QStringLiteral("serviceId");
const QString kVexaRoles = QStringLiteral("vexaRoles");

void fillIfEmpty(QString& field, const QString& value)
{
    if (field.isEmpty())
        field = value;
}

} // namespace

VexaPlayListItem VexaPlayListItem::fromHash(const QVariantHash& hash)
{
    VexaPlayListItem item;
    item.m_uid = VexaVariant::toInt(hash.value(kUid), -1);
    item.m_sequenceNumber = VexaVariant::toInt(hash.value(kSequenceNumber), -1);
    item.m_title = hash.value(kTitle).toString();
    item.m_artist = hash.value(kArtist).toString();
    item.m_album = hash.value(kAlbum).toString();
    item.m_artworkUrl = hash.value(kArtworkUrl).toString();
    item.m_genre = hash.value(kGenre).toString();
    item.m_durationSeconds = VexaVariant::toInt(hash.value(kDurationSeconds), 0);
    item.m_url = hash.value(kUrl).toString();
    item.m_serviceId = hash.value(kServiceId).toString();
    // Roles may arrive as their JSON text or, from lenient clients, as an object.
    const QVariant roles = hash.value(kVexaRoles);
    item.m_vexaRoles = roles.type() == QVariant::Hash ? QString::fromUtf8(VexaJson::toJson(roles)) : roles.toString();
    item.fillFromRoles();
    return item;
}

QVariantHash VexaPlayListItem::toHash() const
{
    return {{kUid, m_uid},
            {kSequenceNumber, m_sequenceNumber},
            {kTitle, m_title},
            {kArtist, m_artist},
            {kAlbum, m_album},
            {kArtworkUrl, m_artworkUrl},
            {kGenre, m_genre},
            {kDurationSeconds, m_durationSeconds},
            {kUrl, m_url},
            {kServiceId, m_serviceId},
            {kVexaRoles, m_vexaRoles}};
}

void VexaPlayListItem::fillFromRoles()
{
    m_playableTrack = false;
    if (m_vexaRoles.isEmpty())
        return;
    const VexaTrackFields roles = VexaTrackFields::read(m_vexaRoles);
    const bool playable = (roles.hasResource && !roles.uri.isEmpty()) || !roles.prePlayPath.isEmpty();
    m_playableTrack = !roles.title.isEmpty() && roles.audio && playable;
    fillIfEmpty(m_title, roles.title);
    fillIfEmpty(m_artist, roles.artist);
    fillIfEmpty(m_album, roles.album);
    fillIfEmpty(m_genre, roles.genre);
    fillIfEmpty(m_serviceId, roles.serviceId);
    fillIfEmpty(m_artworkUrl, roles.icon);
    if (roles.hasResource) {
        if (m_durationSeconds == 0)
            m_durationSeconds = roles.duration;
        fillIfEmpty(m_url, roles.uri);
    }
    fillIfEmpty(m_url, roles.path);
}

bool VexaPlayListItem::operator==(const VexaPlayListItem& other) const
{
    return m_uid == other.m_uid && m_sequenceNumber == other.m_sequenceNumber && m_title == other.m_title
        && m_artist == other.m_artist && m_album == other.m_album && m_artworkUrl == other.m_artworkUrl
        && m_genre == other.m_genre && m_durationSeconds == other.m_durationSeconds && m_url == other.m_url
        && m_serviceId == other.m_serviceId && m_vexaRoles == other.m_vexaRoles;
}

QDebug operator<<(QDebug debug, const VexaPlayListItem& item)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "VexaPlayListItem(uid=" << item.uid() << ", seq=" << item.sequenceNumber()
                    << ", title=" << item.title() << ", url=" << item.url() << ')';
    return debug;
}
