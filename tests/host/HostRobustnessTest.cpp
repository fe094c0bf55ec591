#include "ApiCalls.h"
#include "HostProcess.h"

#include <gtest/gtest.h>

namespace {

struct BadRequest
{
    QByteArray method;
    QString target;
    QByteArray body;
    int status;
    QString errorName;
};

} // namespace

TEST(HostRobustness, EveryKindOfBadInputGetsItsErrorAndTheHostGoesOn)
{
    HostProcess host;
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();
    const HttpClient client = host.client();
    const QString id = ApiCalls(client).subscribe({});
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
        {"GET", "/api/v1/rows?path=testmod%3A%2Fitems&from=5&to=2", "", 400, bad},
        {"GET", "/api/v1/rows?path=testmod%3A%2Fitems&to=99999999999", "", 400, bad},
        {"POST", "/api/v1/subscriptions", R"({"subscribe": [{"path": "a:/b", "kind": "other"}]})", 400, bad},
        {"POST", "/api/v1/subscriptions", R"({"subscribe": "a:/b"})", 400, bad},
        {"PATCH", "/api/v1/subscriptions/" + id, "{", 400, bad},
        {"GET", "/api/v1/events?subscription=" + id + "&timeout=-1", "", 400, bad},
        {"GET", "/api/v1/events", "", 400, bad},
        {"GET", "/api/v1/nothing", "", 404, QStringLiteral("notFound")},
        {"GET", "/", "", 404, QStringLiteral("notFound")},
        {"GET", "/api/v1/rows/extra", "", 404, QStringLiteral("notFound")},
        {"GET", "/api/v1/subscriptions/", "", 404, QStringLiteral("notFound")},
        {"GET", "/api/v1/subscriptions/" + id, "", 405, QStringLiteral("methodNotAllowed")},
        {"GET", "/api/v1/data?path=nosuch%3A%2Fx", "", 404, QStringLiteral("invalidPath")},
        {"GET", "/api/v1/events?subscription=unknown", "", 404, QStringLiteral("invalidSubscription")},
        {"DELETE", "/api/v1/data", "", 405, QStringLiteral("methodNotAllowed")},
        {"PUT", "/api/v1/subscriptions", "{}", 405, QStringLiteral("methodNotAllowed")},
        {"POST", "/api/v1/data", QByteArray(3 * 1024 * 1024, 'x'), 413, QStringLiteral("payloadTooLarge")},
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

    const HttpReply after = ApiCalls(client).data(QStringLiteral("settings:/playlists/itemLimit"));
    EXPECT_EQ(after.status, 200);
    EXPECT_EQ(ApiCalls(client).setData(QStringLiteral("settings:/playlists/itemLimit"), ApiCalls::i32(9)).status, 200);
    EXPECT_TRUE(host.isRunning());
    EXPECT_TRUE(host.stop()) << host.log().constData();
}
