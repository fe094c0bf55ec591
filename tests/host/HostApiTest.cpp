#include "ApiCalls.h"
#include "ApiRouter.h"
#include "EventStreamReader.h"
#include "HostFixture.h"
#include "HostProcess.h"

#include <VexaJson.h>

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

const QString kItemLimit = QStringLiteral("settings:/playlists/itemLimit");

QVariant json(const char* text)
{
    return VexaJson::parse(text, nullptr);
}

class HostApi : public HostFixture
{
};

QVariantHash valueOf(const HttpReply& reply)
{
    return reply.json().toHash().value(QStringLiteral("value")).toHash();
}

QVariantHash stringValue(const QString& text)
{
    return {{QStringLiteral("type"), QStringLiteral("string_")}, {QStringLiteral("string_"), text}};
}

struct BadRequest
{
    QByteArray method;
    QString target;
    QByteArray body;
    int status;
    QString errorName;
};

} // namespace

TEST_F(HostApi, RowsArePagedWithTheRolesAskedForInOrder)
{
    const HttpReply page = api().rows(QStringLiteral("testmod:/items"), QStringLiteral("path,title,missing"), 10, 14);
    ASSERT_EQ(page.status, 200) << page.body.constData();
    const QVariantHash answer = page.json().toHash();
    EXPECT_EQ(answer.value(QStringLiteral("roles")).toHash().value(QStringLiteral("title")).toString(), QStringLiteral("Test items"));
    EXPECT_EQ(answer.value(QStringLiteral("rowsCount")).toInt(), 25);
    const QVariantList rows = answer.value(QStringLiteral("rows")).toList();
    ASSERT_EQ(rows.size(), 5);
    EXPECT_EQ(VexaJson::toJson(rows.first()), QByteArray(R"(["testmod:/items/10","Item 10",null])"));
    EXPECT_EQ(VexaJson::toJson(rows.last()), QByteArray(R"(["testmod:/items/14","Item 14",null])"));

    // Defaults: from 0, to from + 99, every role, each row an object.
    const QVariantList all = api().rows(QStringLiteral("testmod:/items")).json().toHash().value(QStringLiteral("rows")).toList();
    ASSERT_EQ(all.size(), 25);
    EXPECT_EQ(all.at(24).toHash().value(QStringLiteral("type")).toString(), QStringLiteral("audio"));
    const QVariantList tail = api().rows(QStringLiteral("testmod:/items"), QStringLiteral("title"), 20)
                                  .json().toHash().value(QStringLiteral("rows")).toList();
    EXPECT_EQ(tail, QVariantList({QVariantList{"Item 20"}, QVariantList{"Item 21"}, QVariantList{"Item 22"},
                                  QVariantList{"Item 23"}, QVariantList{"Item 24"}}));
    EXPECT_EQ(api().rows(QStringLiteral("testmod:/nothing")).errorName(), QStringLiteral("invalidPath"));

    // The served document is the router's, as JSON.
    const HttpReply document = m_host.client().get(QStringLiteral("/api/v1/openapi.json"));
    EXPECT_EQ(document.headers.value("content-type"), QByteArray("application/json"));
    EXPECT_EQ(document.body, ApiRouter::openApiDocument());
}

TEST_F(HostApi, DataAnswersValuesOnValuePathsAndRolesOnNodes)
{
    EXPECT_EQ(api().data(kItemLimit).json(),
              json(R"({"value": {"type": "i32_", "i32_": 10000}})"));
    // ".." inside a parameter value is no escape.
    const HttpReply node = api().data(QStringLiteral("testmod:/items?name=a..b"), QStringLiteral("title,type"));
    ASSERT_EQ(node.status, 200) << node.body.constData();
    EXPECT_EQ(node.json(), json(R"({"title": "Test items", "type": "container"})"));

    EXPECT_EQ(api().data(QStringLiteral("testmod:/nothing")).status, 404);
    const HttpReply noModule = api().data(QStringLiteral("nosuch:/x"));
    EXPECT_EQ(noModule.status, 404);
    EXPECT_EQ(noModule.errorName(), QStringLiteral("invalidPath"));
}

TEST_F(HostApi, SetDataReachesCommandsOnTheirWorkerThreadAndRefusalsAre422)
{
    const HttpReply command = api().setData(QStringLiteral("testmod:/command"), json(R"({"list": [1, "two"], "n": null})"));
    ASSERT_EQ(command.status, 200) << command.body.constData();
    EXPECT_EQ(command.json(), json(R"({"onWorkerThread": true, "value": {"list": [1, "two"], "n": null}})"));
    EXPECT_EQ(api().setData(QStringLiteral("testmod:/command"), QVariant::fromValue(nullptr)).json(),
              json(R"({"onWorkerThread": true, "value": null})"));

    const HttpReply refused = api().setData(QStringLiteral("testmod:/refuse"), json(R"({"reason": "not today"})"));
    EXPECT_EQ(refused.status, 422);
    EXPECT_EQ(refused.errorName(), QStringLiteral("error"));
    EXPECT_EQ(refused.errorMessage(), QStringLiteral("Refused: not today"));

    EXPECT_EQ(api().setData(kItemLimit, ApiCalls::i32(500)).status, 200);
    EXPECT_EQ(api().data(kItemLimit).json(), json(R"({"value": {"type": "i32_", "i32_": 500}})"));
    EXPECT_EQ(api().setData(QStringLiteral("nosuch:/command"), 1).errorName(), QStringLiteral("invalidPath"));
}

TEST(HostReplyTimeout, ACommandSlowerThanTheReplyTimeoutIs504AndItsLateReplyGoesNowhere)
{
    HostProcess host({QStringLiteral("libvexa_testmod.so")}, {QStringLiteral("--reply-timeout"), QStringLiteral("300")});
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();
    const ApiCalls api(host.client());
    const HttpReply slow = api.setData(QStringLiteral("testmod:/slow"), json(R"({"ms": 1500})"));
    EXPECT_EQ(slow.status, 504);
    EXPECT_EQ(slow.errorName(), QStringLiteral("timeout"));
    // Queued behind the slow one on the module's thread, answered after its late reply.
    EXPECT_EQ(api.setData(QStringLiteral("testmod:/slow"), json(R"({"ms": 1})")).body, QByteArray("true"));
    EXPECT_TRUE(host.stop()) << host.log().constData();
}

TEST_F(HostApi, ValueChangesRowsResetsAndInsertsReachLongPollsAndStreams)
{
    const ApiCalls::Topics topics{{QStringLiteral("value"), kItemLimit}, {QStringLiteral("rows"), QStringLiteral("testmod:/items")}};
    const QString polled = api().subscribe(topics);
    const QString streamed = api().subscribe(topics);
    ASSERT_FALSE(polled.isEmpty());
    EventStreamReader stream;
    ASSERT_TRUE(stream.open(m_host.port(), api().streamTarget(streamed)));
    ASSERT_EQ(stream.status(), 200);

    // A poll already waiting is answered by the notification.
    const auto waiting = m_host.client().send("GET", api().pollTarget(polled, 30), QByteArray());
    notify(json(R"({"path": "testmod:/items", "kind": "reset"})"));
    const HttpReply first = HttpReply::read(*waiting, QDeadlineTimer(15000));
    ASSERT_EQ(first.status, 200);
    const QVariant reset = json(R"({"path": "testmod:/items", "kind": "rows", "change": "reset"})");
    EXPECT_EQ(first.json(), QVariantList{reset});

    ASSERT_EQ(api().setData(kItemLimit, ApiCalls::i32(123)).status, 200);
    notify(json(R"({"path": "testmod:/items", "kind": "insert", "rows": [7, 8, 9]})"));
    const QVariantList later = {
        json(R"({"path": "settings:/playlists/itemLimit", "kind": "value", "value": {"type": "i32_", "i32_": 123}})"),
        json(R"({"path": "testmod:/items", "kind": "rows", "change": "insert", "rows": [7, 8, 9]})")};
    EXPECT_EQ(pollNow(polled), later);

    for (const QVariant& expected : QVariantList{reset} + later) {
        QByteArray data;
        ASSERT_TRUE(stream.readData(&data, 10000));
        EXPECT_EQ(json(data.constData()), expected);
    }
}

TEST_F(HostApi, SubscriptionsChangeAndEnd)
{
    const QString id = api().subscribe({});
    ASSERT_FALSE(id.isEmpty());
    const ApiCalls::Topics limit{{QStringLiteral("value"), kItemLimit}};
    ASSERT_EQ(api().modify(id, limit, {}).status, 200);
    api().setData(kItemLimit, ApiCalls::i32(1));
    EXPECT_EQ(pollNow(id).size(), 1);
    ASSERT_EQ(api().modify(id, {}, limit).status, 200);
    api().setData(kItemLimit, ApiCalls::i32(2));
    // An empty long poll answers an empty list after its timeout.
    const HttpReply empty = api().poll(id, 1);
    EXPECT_EQ(empty.status, 200);
    EXPECT_EQ(empty.body, QByteArray("[]"));

    EventStreamReader stream;
    ASSERT_TRUE(stream.open(m_host.port(), api().streamTarget(id)));
    EXPECT_EQ(m_host.client().request("DELETE", QStringLiteral("/api/v1/subscriptions/") + id, {}).status, 200);
    EXPECT_TRUE(stream.waitForEnd(10000)) << "the stream of an ended subscription ends";
    EXPECT_EQ(api().poll(id, 0).errorName(), QStringLiteral("invalidSubscription"));
    EXPECT_EQ(m_host.client().request("DELETE", QStringLiteral("/api/v1/subscriptions/") + id, {}).status, 404);
    EXPECT_EQ(api().modify(id, limit, {}).status, 404);
    EventStreamReader gone;
    ASSERT_TRUE(gone.open(m_host.port(), api().streamTarget(id)));
    EXPECT_EQ(gone.status(), 404);
}

TEST_F(HostApi, TwoHundredWaitingLongPollsDoNotHoldUpOtherRequests)
{
    constexpr int kPolls = 200;
    std::vector<std::unique_ptr<HttpSocket>> polls;
    for (int i = 0; i < kPolls; ++i) {
        const QString id = api().subscribe({{QStringLiteral("value"), kItemLimit}});
        ASSERT_FALSE(id.isEmpty());
        polls.push_back(m_host.client().send("GET", api().pollTarget(id, 30), QByteArray()));
        ASSERT_TRUE(polls.back());
    }
    // Answered at all within a bound far below the polls' timeout.
    EXPECT_EQ(m_host.client().get(QStringLiteral("/api/v1/openapi.json"), 5000).status, 200);

    // One change wakes every one of them.
    ASSERT_EQ(api().setData(kItemLimit, ApiCalls::i32(77)).status, 200);
    int woken = 0;
    for (auto& socket : polls) {
        const QVariantList events = HttpReply::read(*socket, QDeadlineTimer(15000)).json().toList();
        woken += events.size() == 1 && events.first().toHash().value(QStringLiteral("value")) == QVariant(ApiCalls::i32(77));
    }
    EXPECT_EQ(woken, kPolls);
}

TEST_F(HostApi, EveryKindOfBadInputGetsItsErrorAndTheHostGoesOn)
{
    const HttpClient client = m_host.client();
    const QString id = api().subscribe({});
    const QString bad = QStringLiteral("badRequest");

    const BadRequest cases[] = {
        {"POST", "/api/v1/data", "{not json", 400, bad},
        {"POST", "/api/v1/data", "[1, 2]", 400, bad},
        {"POST", "/api/v1/data", "", 400, bad},
        {"POST", "/api/v1/data", R"({"value": 1})", 400, bad},
        {"POST", "/api/v1/data", R"({"path": 5, "value": 1})", 400, bad},
        {"POST", "/api/v1/data", R"({"path": "settings:/playlists/itemLimit", "value": {"type": "i32_", "i32_": "many"}})", 400, bad},
        {"POST", "/api/v1/data", R"({"path": "settings:/playlists/itemLimit", "value": "text"})", 400, bad},
        {"POST", "/api/v1/data", R"({"path": "settings:/../../etc/passwd", "value": 1})", 400, bad},
        {"POST", "/api/v1/data", R"({"path": null, "value": 1})", 400, bad},
        {"GET", "/api/v1/data", "", 400, bad},
        {"GET", "/api/v1/data?path=settings%3A%2F..%2Fetc", "", 400, bad},
        {"GET", "/api/v1/data?path=testmod%3A%2Fitems%2F..", "", 400, bad},
        {"GET", "/api/v1/data?path=", "", 400, bad},
        {"GET", "/api/v1/data?path=%2Fno%2Fprefix", "", 400, bad},
        {"GET", "/api/v1/data?path=settings%3A%2Fa%00b", "", 400, bad},
        {"GET", "/api/v1/data?path=settings%3A%2Fa%3Fx%3D%00", "", 400, bad},
        {"GET", "/api/v1/rows?path=testmod%3A%2Fitems%00", "", 400, bad},
        {"GET", "/api/v1/rows?path=testmod%3A%2Fitems&from=abc", "", 400, bad},
        {"POST", "/api/v1/subscriptions", R"({"subscribe": [{"path": "a:/b", "kind": "other"}]})", 400, bad},
        {"POST", "/api/v1/subscriptions", R"({"subscribe": "a:/b"})", 400, bad},
        {"POST", "/api/v1/subscriptions", R"({"subscribe": [{"kind": "rows"}]})", 400, bad},
        {"POST", "/api/v1/subscriptions", R"({"subscribe": [{"path": 7, "kind": "rows"}]})", 400, bad},
        {"POST", "/api/v1/subscriptions", R"({"subscribe": [{"path": "p:/../etc", "kind": "rows"}]})", 400, bad},
        {"POST", "/api/v1/subscriptions", R"({"subscribe": ["p:/a"]})", 400, bad},
        {"PATCH", "/api/v1/subscriptions/" + id, "{", 400, bad},
        {"GET", "/api/v1/events?subscription=" + id + "&timeout=-1", "", 400, bad},
        {"GET", "/api/v1/events", "", 400, bad},
        {"GET", "/api/v1/nothing", "", 404, QStringLiteral("notFound")},
        {"GET", "/no/such/thing", "", 404, QStringLiteral("notFound")},
        {"GET", "/api/v1/rows/extra", "", 404, QStringLiteral("notFound")},
        {"GET", "/api/v1/subscriptions/", "", 404, QStringLiteral("notFound")},
        {"GET", "/api/v1/subscriptions/" + id, "", 405, QStringLiteral("methodNotAllowed")},
        {"GET", "/api/v1/data?path=nosuch%3A%2Fx", "", 404, QStringLiteral("invalidPath")},
        {"GET", "/api/v1/events?subscription=unknown", "", 404, QStringLiteral("invalidSubscription")},
        {"DELETE", "/api/v1/data", "", 405, QStringLiteral("methodNotAllowed")},
        {"PUT", "/api/v1/subscriptions", "{}", 405, QStringLiteral("methodNotAllowed")},
        {"POST", "/api/v1/data", QByteArray(17 * 1024 * 1024, 'x'), 413, QStringLiteral("payloadTooLarge")},
    };
    for (const BadRequest& c : cases) {
        const HttpReply reply = client.request(c.method, c.target, c.body);
        const QString what = QString::fromLatin1(c.method) + QLatin1Char(' ') + c.target + QLatin1Char(' ')
            + QString::fromUtf8(c.body.left(80));
        EXPECT_EQ(reply.status, c.status) << what.toStdString() << " -> " << reply.body.constData();
        EXPECT_EQ(reply.errorName(), c.errorName) << what.toStdString();
        const QVariantHash envelope = reply.json().toHash().value(QStringLiteral("error")).toHash();
        EXPECT_FALSE(envelope.value(QStringLiteral("title")).toString().isEmpty()) << what.toStdString();
        EXPECT_FALSE(envelope.value(QStringLiteral("message")).toString().isEmpty()) << what.toStdString();
    }

    EXPECT_EQ(client.request("PUT", "/api/v1/data", "{}").headers.value("allow"), QByteArray("GET, POST"));

    // Requests no HTTP client would send.
    // (The short limits are for answers that never come: the host may just
    // hold or close such connections.)
    client.raw("GARBAGE\r\n\r\n", 500);
    client.raw(QByteArray("\x00\x01\x02\xff\r\n\r\n", 8), 500);
    client.raw("GET /api/v1/data?path=settings%3A%2Fa HTTP/1.1\r\nHost: x\r\nX-Big: " + QByteArray(200000, 'a')
                   + "\r\n\r\n",
               500);
    client.raw("POST /api/v1/data HTTP/1.1\r\nHost: x\r\nContent-Length: 100\r\n\r\n{\"path\"", 500);
    client.raw("POST /api/v1/data HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n", 500);

    EXPECT_EQ(api().data(kItemLimit).status, 200);
    EXPECT_EQ(api().setData(kItemLimit, ApiCalls::i32(9)).status, 200);
    EXPECT_TRUE(m_host.stop()) << m_host.log().constData();
}

TEST_F(HostApi, SettingsSurviveARestartAndDefaultsFillTheRest)
{
    EXPECT_EQ(valueOf(api().data(kItemLimit, "value")), ApiCalls::i32(10000));
    ASSERT_EQ(api().setData(kItemLimit, ApiCalls::i32(25)).status, 200);
    ASSERT_EQ(api().setData("settings:/vendor/custom", stringValue("kept")).status, 200);
    // A refused value changes nothing, in memory or on disk.
    EXPECT_EQ(api().setData(kItemLimit, QVariantHash{{"type", "i32_"}, {"i32_", "x"}}).status, 400);

    QString error;
    ASSERT_TRUE(m_host.restart(&error)) << error.toStdString();
    EXPECT_EQ(valueOf(api().data(kItemLimit, "value")), ApiCalls::i32(25));
    EXPECT_EQ(valueOf(api().data("settings:/vendor/custom", "value")), stringValue("kept"));
    EXPECT_EQ(valueOf(api().data("settings:/language", "value")), stringValue("en"));
    EXPECT_EQ(api().data("settings:/never/set", "value").status, 404);
    EXPECT_FALSE(QFile::exists(m_host.root() + "/data-rw/settings.json.tmp"));
}

TEST(HostLifecycle, ACorruptSettingsFileIsSetAsideNotOverwritten)
{
    HostProcess host;
    QDir(host.root()).mkpath("data-rw");
    const QByteArray corrupt = "{\"settings:/playlists/itemLimit\": {\"type\": \"i32_\", \"i32_\": 5}, oops";
    {
        QFile file(host.root() + "/data-rw/settings.json");
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(corrupt);
    }
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();
    ApiCalls api(host.client());
    EXPECT_EQ(valueOf(api.data("settings:/playlists/itemLimit", "value")), ApiCalls::i32(10000));
    EXPECT_TRUE(host.log().contains("Corrupt settings file")) << host.log().toStdString();

    const QStringList aside = QDir(host.root() + "/data-rw").entryList({"settings.json.corrupt-*"}, QDir::Files);
    ASSERT_EQ(aside.size(), 1);
    QFile kept(host.root() + "/data-rw/" + aside.first());
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), corrupt);

    // The next change writes a fresh file beside the one set aside.
    ASSERT_EQ(api.setData("settings:/playlists/itemLimit", ApiCalls::i32(7)).status, 200);
    ASSERT_TRUE(host.restart(&error)) << error.toStdString();
    EXPECT_EQ(valueOf(ApiCalls(host.client()).data("settings:/playlists/itemLimit", "value")), ApiCalls::i32(7));
}

TEST(HostLifecycle, ModulesThatCannotStartAreNamedAndSkipped)
{
    HostProcess host({"libvexa_noentry.so", "libvexa_failing.so", "libvexa_testmod.so"});
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();
    const QByteArray log = host.log();
    EXPECT_TRUE(log.contains("libvexa_noentry.so skipped: it has no worker_create")) << log.toStdString();
    EXPECT_TRUE(log.contains("libvexa_failing.so skipped: worker_create failed")) << log.toStdString();
    ApiCalls api(host.client());
    EXPECT_EQ(api.rows("testmod:/items", "title", 0, 0).status, 200);
    EXPECT_EQ(api.data("noentry:/anything").errorName(), "invalidPath");
    EXPECT_TRUE(host.stop());
}
