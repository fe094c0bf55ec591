#pragma once

#include "ApiCalls.h"
#include "HostProcess.h"
#include "TestSupport.h"

#include <VexaJson.h>

#include <QDeadlineTimer>
#include <QString>
#include <QStringList>
#include <QThread>
#include <QVariant>

#include <gtest/gtest.h>

#include <ostream>
#include <string>

// The playlists module as an HTTP client of the real host sees it: commands
// and row actions over set-data, lists over rows, subscriptions, and a
// read-only look at the store file under the host's root.
class PlaylistsApi
{
public:
    explicit PlaylistsApi(const HostProcess& host) : m_host(host) {}

    ApiCalls api() const { return ApiCalls(m_host.client()); }
    // POST {"path": path, "value": value}; for "playlists:/<command>" the
    // value may be given as JSON text.
    HttpReply set(const QString& path, const QVariant& value = QVariant::fromValue(nullptr)) const { return api().setData(path, value); }
    HttpReply command(const QString& command, const QVariant& value) const { return set("playlists:/" + command, value); }
    HttpReply command(const QString& command, const char* jsonValue) const { return this->command(command, json(jsonValue)); }
    // The uid a create command answered; -1 when it did not answer one.
    int create(const QString& command, const QString& name) const
    {
        return createdUid(this->command(command, QVariantHash{{"name", name}}));
    }
    static int createdUid(const HttpReply& reply)
    {
        const QVariantHash value = reply.json().toHash().value("result").toHash().value("value").toHash();
        return reply.status == 200 && value.value("type") == "i32_" ? value.value("i32_").toInt() : -1;
    }
    int createPlaylist(const QString& name) const { return create("create-playlist", name); }
    int createCollection(const QString& name) const { return create("create-collection", name); }
    // Appends tracks titled as given, as many per call as keeps each body
    // well below the host's limit; true when every call was accepted.
    bool addTracks(int plid, const QStringList& titles) const
    {
        for (int first = 0; first < titles.size(); first += 2000) {
            QVariantList items;
            for (const QString& title : titles.mid(first, 2000))
                items.append(track(title));
            if (!answeredTrue(command("add-external-items", QVariantHash{{"plid", plid}, {"items", items}})))
                return false;
        }
        return true;
    }

    // The answer of GET /rows; an empty hash when it was not a 200.
    QVariantHash rows(const QString& path, const QString& roles = "*", int from = ApiCalls::NoRow,
                      int to = ApiCalls::NoRow) const
    {
        const HttpReply reply = api().rows(path, roles, from, to);
        return reply.status == 200 ? reply.json().toHash() : QVariantHash();
    }
    // The rows of a list, each an object of every role.
    QVariantList rowList(const QString& path, int from = 0, int to = 999) const { return rows(path, "*", from, to).value("rows").toList(); }
    QStringList titles(const QString& path) const { return column(path, [](const QVariantHash& row) { return row.value("title").toString(); }); }
    // "title|path" of every row of a list.
    QStringList titlesAndPaths(const QString& path) const
    {
        return column(path, [](const QVariantHash& row) { return row.value("title").toString() + '|' + row.value("path").toString(); });
    }
    // The path role of the row at index, or of the row titled title.
    QString rowPath(const QString& listPath, int index) const { return rowList(listPath).value(index).toHash().value("path").toString(); }
    QString rowPath(const QString& listPath, const QString& title) const { return rowPath(listPath, titles(listPath).indexOf(title)); }

    // Every row of every table of the store, sorted.
    QStringList store() const
    {
        const StoreReader reader(m_host.root() + "/data-rw/playlists/playlists.sqlite");
        QStringList result;
        for (const char* table : {"playlists", "items", "playlists_items", "collections", "collections_playlists"})
            result += reader.rows((QByteArray("SELECT '") + table + "', * FROM " + table).constData());
        result.sort();
        return result;
    }
    // The root's rows followed by the store: what a refusal must leave as it was.
    QStringList state() const { return titlesAndPaths("playlists:/root") + store(); }

    // A rows subscription of each path, and what it holds now.
    QString subscribe(const QStringList& paths) const
    {
        ApiCalls::Topics topics;
        for (const QString& path : paths)
            topics.append({"rows", path});
        return api().subscribe(topics);
    }
    QVariantList events(const QString& id) const { return api().poll(id, 0).json().toList(); }

    // The item record of an audio track as clients send it.
    static QVariantHash track(const QString& title, int seconds = 30, const QString& uri = QString())
    {
        const QVariantHash resource{{"uri", uri.isEmpty() ? "test://" + title : uri}, {"duration", seconds}};
        const QVariantHash roles{{"title", title}, {"type", "audio"}, {"mediaData", QVariantHash{{"resources", QVariantList{resource}}}}};
        return {{"vexaRoles", QString::fromUtf8(VexaJson::toJson(roles))}};
    }
    static QVariant json(const char* text)
    {
        QString error;
        const QVariant value = VexaJson::parse(text, &error);
        EXPECT_TRUE(error.isEmpty()) << text << ": " << error.toStdString();
        return value;
    }
    // Canonical JSON text (keys sorted), for comparisons that print readably.
    static std::string text(const QVariant& value) { return VexaJson::toJson(value).toStdString(); }
    static std::string text(const char* jsonText) { return text(json(jsonText)); }
    static QVariantHash stringValue(const QString& text) { return {{"type", "string_"}, {"string_", text}}; }
    static QVariantHash boolValue(bool value) { return {{"type", "bool_"}, {"bool_", value}}; }
    // "A0".."A<n-1>" for a prefix "A".
    static QStringList numbered(const QString& prefix, int count)
    {
        QStringList result;
        for (int i = 0; i < count; ++i)
            result.append(prefix + QString::number(i));
        return result;
    }
    // Whether a reply is the success answer carrying this value.
    static ::testing::AssertionResult answered(const HttpReply& reply, const QVariantHash& value)
    {
        if (reply.status == 200 && reply.json() == QVariant(QVariantHash{{"xclass", "VexaActionReply"}, {"result", QVariantHash{{"value", value}}}}))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "HTTP " << reply.status << " " << reply.body.constData();
    }
    static ::testing::AssertionResult answeredTrue(const HttpReply& reply) { return answered(reply, boolValue(true)); }

private:
    template <typename Text>
    QStringList column(const QString& path, Text text) const
    {
        QStringList result;
        for (const QVariant& row : rowList(path))
            result.append(text(row.toHash()));
        return result;
    }

    const HostProcess& m_host;
};

// The real host with the playlists module and the test module, started anew
// for each test; m_pl talks to it.
class PlaylistsHostTest : public ::testing::Test
{
protected:
    explicit PlaylistsHostTest(const QStringList& arguments = {"--time-scale", "1000"})
        : m_host({HostProcess::playlistsModule(), "libvexa_testmod.so"}, arguments)
    {
    }
    void SetUp() override { start(); }
    // Starts the host, or restarts it on the same root when it runs.
    void start()
    {
        QString error;
        ASSERT_TRUE(m_host.isRunning() ? m_host.restart(&error) : m_host.start(&error)) << error.toStdString();
    }
    // Whether the host's log holds text past offset from, within a little
    // wait: the host writes some lines after it answered.
    bool logHas(int from, const QByteArray& text) const
    {
        const QDeadlineTimer deadline(3000);
        while (m_host.log().indexOf(text, from) < 0) {
            if (deadline.hasExpired())
                return false;
            QThread::msleep(20);
        }
        return true;
    }

    HostProcess m_host;
    PlaylistsApi m_pl{m_host};
};

// Lets failed expectations show texts and lists of texts readably.
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
