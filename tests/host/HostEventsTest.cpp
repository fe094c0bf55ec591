#include "ApiCalls.h"
#include "EventStreamReader.h"
#include "HostProcess.h"

#include <VexaJson.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

const QString kItemLimit = QStringLiteral("settings:/playlists/itemLimit");

QVariant json(const char* text)
{
    return VexaJson::parse(text, nullptr);
}

class HostEvents : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QString error;
        ASSERT_TRUE(m_host.start(&error)) << error.toStdString();
    }

    ApiCalls api() const { return ApiCalls(m_host.client()); }

    // Makes the test module emit a rows notification.
    void notify(const char* notification) const
    {
        const HttpReply reply = api().setData(QStringLiteral("testmod:/notify"), json(notification));
        ASSERT_EQ(reply.status, 200) << reply.body.constData();
    }
    QVariantList pollNow(const QString& id) const
    {
        const HttpReply reply = api().poll(id, 0);
        EXPECT_EQ(reply.status, 200) << reply.body.constData();
        return reply.json().toList();
    }

    HostProcess m_host;
};

} // namespace

TEST_F(HostEvents, ValueChangesRowsResetsAndInsertsReachLongPollsAndStreams)
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
    notify(R"({"path": "testmod:/items", "kind": "reset"})");
    const HttpReply first = HttpReply::read(*waiting, QDeadlineTimer(15000));
    ASSERT_EQ(first.status, 200);
    const QVariant reset = json(R"({"path": "testmod:/items", "kind": "rows", "change": "reset"})");
    EXPECT_EQ(first.json(), QVariantList{reset});

    ASSERT_EQ(api().setData(kItemLimit, ApiCalls::i32(123)).status, 200);
    notify(R"({"path": "testmod:/items", "kind": "insert", "rows": [7, 8, 9]})");
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

TEST_F(HostEvents, SubscriptionsChangeAndEndAndStoppingTheHostEndsStreams)
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

    // (Long polls answered on stopping are checked against the server in
    // process, where a test can see that a poll is really waiting.)
    EventStreamReader open;
    ASSERT_TRUE(open.open(m_host.port(), api().streamTarget(api().subscribe({}))));
    ASSERT_EQ(open.status(), 200);
    EXPECT_TRUE(m_host.stop()) << "a clean exit: " << m_host.log().constData();
    EXPECT_TRUE(open.waitForEnd(10000));
}

TEST_F(HostEvents, TwoHundredWaitingLongPollsDoNotHoldUpOtherRequests)
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
