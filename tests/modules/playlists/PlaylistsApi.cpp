#include "PlaylistsApi.h"

#include <VexaJson.h>

#include <sqlite3.h>

namespace {

const char* const kTables[] = {"playlists", "items", "playlists_items", "collections", "collections_playlists"};

QString rowText(const QVariant& row)
{
    const QVariantList columns = row.toList();
    return columns.value(0).toString() + QLatin1Char('|') + columns.value(1).toString();
}

} // namespace

PlaylistsApi::PlaylistsApi(const HostProcess& host)
    : m_api(host.client()), m_storeFile(host.root() + QStringLiteral("/data-rw/playlists/playlists.sqlite"))
{
}

HttpReply PlaylistsApi::command(const QString& command, const QVariant& value) const
{
    return m_api.setData(QStringLiteral("playlists:/") + command, value);
}

HttpReply PlaylistsApi::command(const QString& command, const char* jsonValue) const
{
    return this->command(command, json(jsonValue));
}

int PlaylistsApi::create(const QString& command, const QString& name) const
{
    const HttpReply reply = this->command(command, QVariantHash{{QStringLiteral("name"), name}});
    const QVariantHash value =
        reply.json().toHash().value(QStringLiteral("result")).toHash().value(QStringLiteral("value")).toHash();
    if (reply.status != 200 || value.value(QStringLiteral("type")) != QStringLiteral("i32_"))
        return -1;
    return value.value(QStringLiteral("i32_")).toInt();
}

bool PlaylistsApi::addTracks(int plid, const QStringList& titles) const
{
    QVariantList items;
    for (const QString& title : titles)
        items.append(track(title));
    return answeredTrue(command(QStringLiteral("add-external-items"),
                                QVariantHash{{QStringLiteral("plid"), plid}, {QStringLiteral("items"), items}}));
}

QStringList PlaylistsApi::rows(const QString& path) const
{
    QStringList result;
    const HttpReply reply = m_api.rows(path, QStringLiteral("title,path"), 0, 999);
    if (reply.status != 200)
        return {QStringLiteral("rows of %1: HTTP %2 %3").arg(path).arg(reply.status).arg(QString::fromUtf8(reply.body))};
    for (const QVariant& row : reply.json().toHash().value(QStringLiteral("rows")).toList())
        result.append(rowText(row));
    return result;
}

QStringList PlaylistsApi::titles(const QString& path) const
{
    QStringList result;
    for (const QString& row : rows(path))
        result.append(row.section(QLatin1Char('|'), 0, -2));
    return result;
}

QStringList PlaylistsApi::store() const
{
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(m_storeFile.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        sqlite3_close(db);
        return {QStringLiteral("cannot open ") + m_storeFile};
    }
    sqlite3_busy_timeout(db, 5000);
    QStringList result;
    for (const char* table : kTables) {
        sqlite3_stmt* stmt = nullptr;
        const QByteArray sql = QByteArray("SELECT * FROM ") + table;
        if (sqlite3_prepare_v2(db, sql.constData(), -1, &stmt, nullptr) != SQLITE_OK) {
            result.append(QStringLiteral("cannot read ") + QLatin1String(table));
            continue;
        }
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            QStringList columns{QLatin1String(table)};
            for (int c = 0; c < sqlite3_column_count(stmt); ++c) {
                const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, c));
                columns.append(text ? QString::fromUtf8(text, sqlite3_column_bytes(stmt, c)) : QStringLiteral("<null>"));
            }
            result.append(columns.join(QLatin1Char('|')));
        }
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
    result.sort();
    return result;
}

QStringList PlaylistsApi::state() const
{
    return rows(QStringLiteral("playlists:/root")) + store();
}

QVariantHash PlaylistsApi::track(const QString& title)
{
    const QVariantHash roles{
        {QStringLiteral("title"), title},
        {QStringLiteral("type"), QStringLiteral("audio")},
        {QStringLiteral("mediaData"),
         QVariantHash{{QStringLiteral("resources"),
                       QVariantList{QVariantHash{{QStringLiteral("uri"), QStringLiteral("test://") + title},
                                                 {QStringLiteral("duration"), 30}}}}}}};
    return {{QStringLiteral("vexaRoles"), QString::fromUtf8(VexaJson::toJson(roles))}};
}

QVariant PlaylistsApi::json(const char* text)
{
    QString error;
    const QVariant value = VexaJson::parse(text, &error);
    EXPECT_TRUE(error.isEmpty()) << text << ": " << error.toStdString();
    return value;
}

::testing::AssertionResult PlaylistsApi::answered(const HttpReply& reply, const QVariantHash& value)
{
    const QVariantHash expected{{QStringLiteral("xclass"), QStringLiteral("VexaActionReply")},
                                {QStringLiteral("result"), QVariantHash{{QStringLiteral("value"), value}}}};
    if (reply.status == 200 && reply.json() == QVariant(expected))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "HTTP " << reply.status << " " << reply.body.constData();
}

::testing::AssertionResult PlaylistsApi::answeredTrue(const HttpReply& reply)
{
    return answered(reply, {{QStringLiteral("type"), QStringLiteral("bool_")}, {QStringLiteral("bool_"), true}});
}
