#include "BrowseTreeClient.h"

#include <VexaJson.h>

namespace {

// Keeps each add-external-items body well below the host's limit on request bodies.
const int kTracksPerCall = 2000;

int createdUid(const HttpReply& reply)
{
    if (reply.status != 200)
        return -1;
    const QVariantHash value =
        reply.json().toHash().value(QStringLiteral("result")).toHash().value(QStringLiteral("value")).toHash();
    return value.value(QStringLiteral("type")) == QLatin1String("i32_") ? value.value(QStringLiteral("i32_")).toInt() : -1;
}

} // namespace

QVariantHash BrowseTreeClient::rows(const QString& path, const QString& roles, int from, int to) const
{
    const HttpReply reply = m_api.rows(path, roles, from, to);
    return reply.status == 200 ? reply.json().toHash() : QVariantHash();
}

QVariantList BrowseTreeClient::rowList(const QString& path, int from, int to) const
{
    return rows(path, QStringLiteral("*"), from, to).value(QStringLiteral("rows")).toList();
}

QStringList BrowseTreeClient::titles(const QString& path) const
{
    QStringList result;
    for (const QVariant& row : rowList(path, 0, 999))
        result.append(row.toHash().value(QStringLiteral("title")).toString());
    return result;
}

QString BrowseTreeClient::rowPath(const QString& listPath, const QString& title) const
{
    for (const QVariant& row : rowList(listPath, 0, 999)) {
        if (row.toHash().value(QStringLiteral("title")).toString() == title)
            return row.toHash().value(QStringLiteral("path")).toString();
    }
    return QString();
}

HttpReply BrowseTreeClient::setData(const QString& path, const QVariant& value) const
{
    return m_api.setData(path, value);
}

int BrowseTreeClient::createPlaylist(const QString& name) const
{
    return createdUid(setData(QStringLiteral("playlists:/create-playlist"), QVariantHash{{QStringLiteral("name"), name}}));
}

int BrowseTreeClient::createCollection(const QString& name) const
{
    return createdUid(setData(QStringLiteral("playlists:/create-collection"), QVariantHash{{QStringLiteral("name"), name}}));
}

bool BrowseTreeClient::addTracks(int plid, const QStringList& titles) const
{
    for (int first = 0; first < titles.size(); first += kTracksPerCall) {
        QVariantList items;
        for (const QString& title : titles.mid(first, kTracksPerCall)) {
            const QVariantHash resource{{QStringLiteral("uri"), QStringLiteral("test://") + title},
                                        {QStringLiteral("duration"), 30}};
            const QVariantHash roles{
                {QStringLiteral("title"), title},
                {QStringLiteral("type"), QStringLiteral("audio")},
                {QStringLiteral("mediaData"), QVariantHash{{QStringLiteral("resources"), QVariantList{resource}}}}};
            items.append(QVariantHash{{QStringLiteral("vexaRoles"), QString::fromUtf8(VexaJson::toJson(roles))}});
        }
        const HttpReply reply = setData(QStringLiteral("playlists:/add-external-items"),
                                        QVariantHash{{QStringLiteral("plid"), QString::number(plid)},
                                                     {QStringLiteral("items"), items}});
        if (reply.status != 200)
            return false;
    }
    return true;
}

QString BrowseTreeClient::subscribe(const QStringList& paths) const
{
    ApiCalls::Topics topics;
    for (const QString& path : paths)
        topics.append({QStringLiteral("rows"), path});
    return m_api.subscribe(topics);
}

QVariantList BrowseTreeClient::events(const QString& id) const
{
    return m_api.poll(id, 0).json().toList();
}

QVariant BrowseTreeClient::json(const char* text)
{
    return VexaJson::parse(text, nullptr);
}

std::string BrowseTreeClient::text(const QVariant& value)
{
    return VexaJson::toJson(value).toStdString();
}

std::string BrowseTreeClient::text(const char* json)
{
    return text(VexaJson::parse(json, nullptr));
}

QVariantHash BrowseTreeClient::stringValue(const QString& text)
{
    return {{QStringLiteral("type"), QStringLiteral("string_")}, {QStringLiteral("string_"), text}};
}

QVariantHash BrowseTreeClient::boolValue(bool value)
{
    return {{QStringLiteral("type"), QStringLiteral("bool_")}, {QStringLiteral("bool_"), value}};
}

QStringList BrowseTreeClient::numbered(const QString& prefix, int count)
{
    QStringList result;
    for (int i = 0; i < count; ++i)
        result.append(prefix + QString::number(i));
    return result;
}
