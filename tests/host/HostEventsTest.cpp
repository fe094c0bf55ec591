#include "ApiCalls.h"
#include "EventStreamReader.h"
#include "HostProcess.h"

#include <VexaJson.h>

#include <QSet>

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
    void notify(const QVariant& notification) const
    {
        const HttpReply reply = api().setData(QStringLiteral("testmod:/notify"), notification);
        ASSERT_EQ(reply.status, 200) << reply.body.constData();
    }
    void reset(const QString& path) const
    {
        notify(QVariantHash{{QStringLiteral("path"), path}, {QStringLiteral("kind"), QStringLiteral("reset")}});
    }

    QVariantList pollNow(const QString& id) const
    {
        const HttpReply reply = api().poll(id, 0);
        EXPECT_EQ(reply.status, 200) << reply.body.constData();
        return reply.json().toList();
    }

    HostProcess m_host;
};

QSet<QString> pathsOf(const QVariantList& events)
{
    QSet<QString> paths;
    for (const QVariant& event : events)
        paths.insert(event.toHash().value(QStringLiteral("path")).toString());
    return paths;
}

} // namespace

TEST_F(HostEvents, AValueChangeReachesLongPollsAndStreams)
{
    const QString polled = api().subscribe({{QStringLiteral("value"), kItemLimit}});
    const QString streamed = api().subscribe({{QStringLiteral("value"), kItemLimit}});
    ASSERT_FALSE(polled.isEmpty());
    EventStreamReader stream;
    ASSERT_TRUE(stream.open(m_host.port(), api().streamTarget(streamed)));
    ASSERT_EQ(stream.status(), 200);

    ASSERT_EQ(api().setData(kItemLimit, ApiCalls::i32(123)).status, 200);

    const QVariant expected = json(R"({"path": "settings:/playlists/itemLimit", "kind": "value",
                                        "value": {"type": "i32_", "i32_": 123}})");
    const HttpReply poll = api().poll(polled, 10);
    ASSERT_EQ(poll.status, 200);
    EXPECT_EQ(poll.json(), QVariant(QVariantList{expected}));
    QByteArray data;
    ASSERT_TRUE(stream.readData(&data, 10000));
    EXPECT_EQ(json(data.constData()), expected);
}

TEST_F(HostEvents, RowsResetsAndInsertsReachLongPollsAndStreams)
{
    const ApiCalls::Topics items{{QStringLiteral("rows"), QStringLiteral("testmod:/items")}};
    const QString polled = api().subscribe(items);
    const QString streamed = api().subscribe(items);
    EventStreamReader stream;
    ASSERT_TRUE(stream.open(m_host.port(), api().streamTarget(streamed)));

    // A poll already waiting is answered by the notification.
    const auto waiting = m_host.client().send("GET", api().pollTarget(polled, 30), QByteArray());
    reset(QStringLiteral("testmod:/items"));
    const HttpReply first = HttpReply::read(*waiting, QDeadlineTimer(15000));
    ASSERT_EQ(first.status, 200);
    EXPECT_EQ(first.json(), json(R"([{"path": "testmod:/items", "kind": "rows", "change": "reset"}])"));

    notify(json(R"({"path": "testmod:/items", "kind": "insert", "rows": [7, 8, 9]})"));
    const QVariant insert = json(R"({"path": "testmod:/items", "kind": "rows", "change": "insert", "rows": [7, 8, 9]})");
    EXPECT_EQ(pollNow(polled), QVariantList{insert});

    QByteArray data;
    ASSERT_TRUE(stream.readData(&data, 10000));
    EXPECT_EQ(json(data.constData()), json(R"({"path": "testmod:/items", "kind": "rows", "change": "reset"})"));
    ASSERT_TRUE(stream.readData(&data, 10000));
    EXPECT_EQ(json(data.constData()), insert);
}

TEST_F(HostEvents, AResetReachesTheListsThatContinueItsPathAndNoOthers)
{
    const QString id = api().subscribe({
        {QStringLiteral("rows"), QStringLiteral("playlists:/menu/playlist?plid=3")},
        {QStringLiteral("rows"), QStringLiteral("playlists:/menu/playlists")},
        {QStringLiteral("rows"), QStringLiteral("playlists:/tracks/12")},
        {QStringLiteral("rows"), QStringLiteral("playlists:/tracks/1/more")},
        {QStringLiteral("rows"), QStringLiteral("playlists:/tracks/1?plid=1")},
        {QStringLiteral("value"), QStringLiteral("playlists:/tracks/1")},
    });
    ASSERT_FALSE(id.isEmpty());
    reset(QStringLiteral("playlists:/menu/playlist"));
    reset(QStringLiteral("playlists:/tracks/1"));
    EXPECT_EQ(pathsOf(pollNow(id)), (QSet<QString>{QStringLiteral("playlists:/menu/playlist?plid=3"),
                                                   QStringLiteral("playlists:/tracks/1/more"),
                                                   QStringLiteral("playlists:/tracks/1?plid=1")}));

    // Inserts reach exactly their path only.
    notify(json(R"({"path": "playlists:/tracks/1", "kind": "insert", "rows": [0]})"));
    EXPECT_TRUE(pollNow(id).isEmpty());
    notify(json(R"({"path": "playlists:/tracks/12", "kind": "insert", "rows": [0]})"));
    EXPECT_EQ(pathsOf(pollNow(id)), QSet<QString>{QStringLiteral("playlists:/tracks/12")});
}

TEST_F(HostEvents, AnEmptyLongPollAnswersAnEmptyListAfterItsTimeout)
{
    const QString id = api().subscribe({{QStringLiteral("value"), kItemLimit}});
    const HttpReply reply = api().poll(id, 1);
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.body, QByteArray("[]"));
}

TEST_F(HostEvents, SubscriptionsChangeAndEnd)
{
    const QString id = api().subscribe({});
    ASSERT_FALSE(id.isEmpty());
    const ApiCalls::Topics limit{{QStringLiteral("value"), kItemLimit}};
    ASSERT_EQ(api().modify(id, limit, {}).status, 200);
    api().setData(kItemLimit, ApiCalls::i32(1));
    EXPECT_EQ(pollNow(id).size(), 1);
    ASSERT_EQ(api().modify(id, {}, limit).status, 200);
    api().setData(kItemLimit, ApiCalls::i32(2));
    EXPECT_TRUE(pollNow(id).isEmpty());

    EventStreamReader stream;
    ASSERT_TRUE(stream.open(m_host.port(), api().streamTarget(id)));
    EXPECT_EQ(m_host.client().del(QStringLiteral("/api/v1/subscriptions/") + id).status, 200);
    EXPECT_TRUE(stream.waitForEnd(10000)) << "the stream of an ended subscription ends";
    EXPECT_EQ(api().poll(id, 0).errorName(), QStringLiteral("invalidSubscription"));
    EXPECT_EQ(m_host.client().del(QStringLiteral("/api/v1/subscriptions/") + id).status, 404);
    EXPECT_EQ(api().modify(id, limit, {}).status, 404);
    EventStreamReader gone;
    ASSERT_TRUE(gone.open(m_host.port(), api().streamTarget(id)));
    EXPECT_EQ(gone.status(), 404);
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
    const HttpReply other = m_host.client().get(
        QStringLiteral("/api/v1/data?") + HttpClient::query({{QStringLiteral("path"), kItemLimit}}), 5000);
    EXPECT_EQ(other.status, 200);

    // One change wakes every one of them.
    ASSERT_EQ(api().setData(kItemLimit, ApiCalls::i32(77)).status, 200);
    int woken = 0;
    for (auto& socket : polls) {
        const HttpReply reply = HttpReply::read(*socket, QDeadlineTimer(15000));
        const QVariantList events = reply.json().toList();
        if (reply.status == 200 && events.size() == 1
            && events.first().toHash().value(QStringLiteral("value")) == QVariant(ApiCalls::i32(77)))
            ++woken;
    }
    EXPECT_EQ(woken, kPolls);
}

TEST_F(HostEvents, StoppingTheHostEndsOpenStreams)
{
    // (Long polls answered on stopping are checked against the server in
    // process, where a test can see that a poll is really waiting.)
    EventStreamReader stream;
    ASSERT_TRUE(stream.open(m_host.port(), api().streamTarget(api().subscribe({}))));
    ASSERT_EQ(stream.status(), 200);
    EXPECT_TRUE(m_host.stop()) << "a clean exit: " << m_host.log().constData();
    EXPECT_TRUE(stream.waitForEnd(10000));
}
