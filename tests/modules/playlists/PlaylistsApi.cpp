#include "PlaylistsApi.h"

#include "TestSupport.h"

#include <VexaJson.h>

HttpReply PlaylistsApi::set(const QString& path, const QVariant& value) const
{
    return api().setData(path, value);
}

HttpReply PlaylistsApi::command(const QString& command, const QVariant& value) const
{
    return set("playlists:/" + command, value);
}

HttpReply PlaylistsApi::command(const QString& command, const char* jsonValue) const
{
    return this->command(command, json(jsonValue));
}

int PlaylistsApi::create(const QString& command, const QString& name) const
{
    const HttpReply reply = this->command(command, QVariantHash{{"name", name}});
    const QVariantHash value = reply.json().toHash().value("result").toHash().value("value").toHash();
    return reply.status == 200 && value.value("type") == "i32_" ? value.value("i32_").toInt() : -1;
}

bool PlaylistsApi::addTracks(int plid, const QStringList& titles) const
{
    // Keeps each body well below the host's limit on request bodies.
    const int perCall = 2000;
    for (int first = 0; first < titles.size(); first += perCall) {
        QVariantList items;
        for (const QString& title : titles.mid(first, perCall))
            items.append(track(title));
        if (!answeredTrue(command("add-external-items", QVariantHash{{"plid", plid}, {"items", items}})))
            return false;
    }
    return true;
}

QVariantHash PlaylistsApi::rows(const QString& path, const QString& roles, int from, int to) const
{
    const HttpReply reply = api().rows(path, roles, from, to);
    return reply.status == 200 ? reply.json().toHash() : QVariantHash();
}

QVariantList PlaylistsApi::rowList(const QString& path, int from, int to) const
{
    return rows(path, "*", from, to).value("rows").toList();
}

QStringList PlaylistsApi::titles(const QString& path) const
{
    QStringList result;
    for (const QVariant& row : rowList(path))
        result.append(row.toHash().value("title").toString());
    return result;
}

QStringList PlaylistsApi::titlesAndPaths(const QString& path) const
{
    QStringList result;
    for (const QVariant& row : rowList(path))
        result.append(row.toHash().value("title").toString() + '|' + row.toHash().value("path").toString());
    return result;
}

QString PlaylistsApi::rowPath(const QString& listPath, int index) const
{
    return rowList(listPath).value(index).toHash().value("path").toString();
}

QString PlaylistsApi::rowPath(const QString& listPath, const QString& title) const
{
    return rowPath(listPath, titles(listPath).indexOf(title));
}

QStringList PlaylistsApi::store() const
{
    const StoreReader reader(m_host.root() + "/data-rw/playlists/playlists.sqlite");
    QStringList result;
    for (const char* table : {"playlists", "items", "playlists_items", "collections", "collections_playlists"})
        result += reader.rows((QByteArray("SELECT '") + table + "', * FROM " + table).constData());
    result.sort();
    return result;
}

QString PlaylistsApi::subscribe(const QStringList& paths) const
{
    ApiCalls::Topics topics;
    for (const QString& path : paths)
        topics.append({"rows", path});
    return api().subscribe(topics);
}

QVariantList PlaylistsApi::events(const QString& id) const
{
    return api().poll(id, 0).json().toList();
}

QVariantHash PlaylistsApi::track(const QString& title, int seconds, const QString& uri)
{
    const QVariantHash resource{{"uri", uri.isEmpty() ? "test://" + title : uri}, {"duration", seconds}};
    const QVariantHash roles{
        {"title", title}, {"type", "audio"}, {"mediaData", QVariantHash{{"resources", QVariantList{resource}}}}};
    return {{"vexaRoles", QString::fromUtf8(VexaJson::toJson(roles))}};
}

QVariant PlaylistsApi::json(const char* text)
{
    QString error;
    const QVariant value = VexaJson::parse(text, &error);
    EXPECT_TRUE(error.isEmpty()) << text << ": " << error.toStdString();
    return value;
}

std::string PlaylistsApi::text(const QVariant& value)
{
    return VexaJson::toJson(value).toStdString();
}

QStringList PlaylistsApi::numbered(const QString& prefix, int count)
{
    QStringList result;
    for (int i = 0; i < count; ++i)
        result.append(prefix + QString::number(i));
    return result;
}

::testing::AssertionResult PlaylistsApi::answered(const HttpReply& reply, const QVariantHash& value)
{
    const QVariantHash expected{{"xclass", "VexaActionReply"}, {"result", QVariantHash{{"value", value}}}};
    if (reply.status == 200 && reply.json() == QVariant(expected))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "HTTP " << reply.status << " " << reply.body.constData();
}
