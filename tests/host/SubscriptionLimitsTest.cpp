#include "HostFixture.h"

#include <VexaJson.h>

#include <gtest/gtest.h>

namespace {

const QString kItemLimit = QStringLiteral("settings:/playlists/itemLimit");
const QString kItems = QStringLiteral("testmod:/items");

// The real host with the test module and its default limits, over HTTP.
class HostSubscriptionLimits : public HostFixture
{
protected:
    // Makes the test module announce rows inserted into its items list.
    void insert(const QVariantList& rows) const
    {
        notify(QVariantHash{{QStringLiteral("path"), kItems}, {QStringLiteral("kind"), QStringLiteral("insert")},
                            {QStringLiteral("rows"), rows}});
    }
};

void expectRefused(const HttpReply& reply, const char* name)
{
    EXPECT_EQ(reply.status, 429) << reply.body.constData();
    EXPECT_EQ(reply.errorName(), QString::fromLatin1(name));
    EXPECT_FALSE(reply.errorMessage().isEmpty());
}

} // namespace

TEST_F(HostSubscriptionLimits, SubscriptionsPastTheClientsLimitAndTopicsPastTheSubscriptionsAre429AndChangeNothing)
{
    const ApiCalls::Topics limit{{QStringLiteral("value"), kItemLimit}};
    ApiCalls::Topics thousand;
    for (int i = 0; i < 1000; ++i)
        thousand.append({QStringLiteral("rows"), QStringLiteral("testmod:/items/%1").arg(i)});

    const QString id = api().subscribe(limit);
    ASSERT_FALSE(id.isEmpty());
    expectRefused(api().modify(id, thousand, {}), "tooManyTopics");
    expectRefused(api().createSubscription(thousand + limit), "tooManyTopics");
    // The refused change left the subscription as it was.
    ASSERT_EQ(api().setData(kItemLimit, ApiCalls::i32(5)).status, 200);
    EXPECT_EQ(pollNow(id).size(), 1);
    // Exactly at the limit is fine.
    EXPECT_EQ(api().modify(id, thousand, limit).status, 200);

    QStringList ids{id};
    for (int i = 1; i < 256; ++i) {
        ids.append(api().subscribe({}));
        ASSERT_FALSE(ids.last().isEmpty()) << "subscription " << i;
    }
    expectRefused(api().createSubscription({}), "tooManySubscriptions");
    // Ending one makes room for another.
    ASSERT_EQ(m_host.client().request("DELETE", QStringLiteral("/api/v1/subscriptions/") + ids.takeLast(), {}).status, 200);
    EXPECT_FALSE(api().subscribe({}).isEmpty());
    expectRefused(api().createSubscription({}), "tooManySubscriptions");
}

TEST_F(HostSubscriptionLimits, AnOverflowingQueueGivesAnOverflowEventFirstAndTheLaterEventsInOrder)
{
    const QString id = api().subscribe({{QStringLiteral("rows"), kItems}});
    ASSERT_FALSE(id.isEmpty());
    // Twenty unread events of about 10 kB each: far more than a queue holds.
    constexpr int kLarge = 20;
    QVariantList bulk;
    for (int row = 0; row < 2000; ++row)
        bulk.append(10000 + row);
    for (int i = 0; i < kLarge; ++i)
        insert(QVariantList{i} + bulk);
    insert({100});
    insert({101});

    const QVariantList events = pollNow(id);
    ASSERT_GE(events.size(), 3);
    const QVariantHash overflow = events.first().toHash();
    EXPECT_EQ(overflow.value(QStringLiteral("kind")).toString(), QStringLiteral("overflow"));
    // What follows the overflow event is the newest events, none missing.
    QList<int> firstRows;
    for (const QVariant& event : events.mid(1))
        firstRows.append(event.toHash().value(QStringLiteral("rows")).toList().value(0).toInt());
    QList<int> expected;
    for (int i = kLarge - (events.size() - 3); i < kLarge; ++i)
        expected.append(i);
    expected << 100 << 101;
    EXPECT_EQ(firstRows, expected);
    EXPECT_EQ(overflow.value(QStringLiteral("dropped")).toInt() + events.size() - 1, kLarge + 2);

    // Read in time, the queue is whole again.
    insert({102});
    EXPECT_EQ(pollNow(id), VexaJson::parse(R"([{"path": "testmod:/items", "kind": "rows", "change": "insert", "rows": [102]}])", nullptr));
}
