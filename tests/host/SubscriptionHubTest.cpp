#include "SubscriptionHub.h"

#include <CMRootWorker.h>
#include <CMSubscribe.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

const QString kClient = QStringLiteral("127.0.0.1");

QString create(SubscriptionHub& hub, const QList<SubscriptionTopic>& topics = {})
{
    QString id;
    EXPECT_EQ(hub.create(kClient, topics, &id), SubscriptionHub::Outcome::Done);
    return id;
}

QList<SubscriptionTopic> rowsTopic(const QString& path)
{
    return {SubscriptionTopic(SubscriptionTopic::Kind::Rows, path)};
}

} // namespace

TEST(SubscriptionHub, RootNotificationsFromAnyThreadReachSubscriptionsAndWakeTheirWaiters)
{
    SubscriptionHub hub(CMRoot());
    const QString listening = create(hub, rowsTopic(QStringLiteral("hubtest:/list?x=1")));
    const QString other = create(hub, rowsTopic(QStringLiteral("hubtest:/elsewhere")));
    EXPECT_EQ(listening.size(), 32);
    EXPECT_NE(listening, other);
    std::atomic<int> wakes{0};
    std::atomic<int> otherWakes{0};
    ASSERT_NE(hub.addWaiter(listening, [&]() { ++wakes; }), 0u);
    ASSERT_NE(hub.addWaiter(other, [&]() { ++otherWakes; }), 0u);

    // Modules notify from their own threads.
    std::thread notifier([]() {
        CMSubscribe().changedStartingWith(CMPath("hubtest:/list"), CMSubscribe::RowsChangeReset());
        CMSubscribe().rowsChanged(CMPath("hubtest:/list?x=1"), {QStringLiteral("+4")});
    });
    notifier.join();

    EXPECT_EQ(wakes.load(), 2);
    EXPECT_EQ(otherWakes.load(), 0);
    QList<QByteArray> events;
    ASSERT_TRUE(hub.takeEvents(listening, &events));
    EXPECT_EQ(events, (QList<QByteArray>{R"({"change":"reset","kind":"rows","path":"hubtest:/list?x=1"})",
                                         R"({"change":"insert","kind":"rows","path":"hubtest:/list?x=1","rows":[4]})"}));
    ASSERT_TRUE(hub.takeEvents(other, &events));
    EXPECT_TRUE(events.isEmpty());
}

TEST(SubscriptionHub, OnlySubscriptionsIdleBeyondTheLimitAndWithoutWaitersAreDropped)
{
    SubscriptionHub hub(CMRoot(), SubscriptionLimits(), std::chrono::seconds(60));
    const QString idle = create(hub);
    const QString waiting = create(hub);
    const quint64 token = hub.addWaiter(waiting, []() {});
    const auto now = SubscriptionHub::Clock::now();

    EXPECT_EQ(hub.dropIdle(now + std::chrono::seconds(59)), 0);
    EXPECT_EQ(hub.dropIdle(now + std::chrono::seconds(61)), 1);
    EXPECT_FALSE(hub.contains(idle));
    EXPECT_TRUE(hub.contains(waiting)) << "a subscription being polled or streamed is in use";
    EXPECT_TRUE(hub.inUse(waiting));

    hub.removeWaiter(waiting, token);
    EXPECT_FALSE(hub.inUse(waiting));
    EXPECT_EQ(hub.dropIdle(SubscriptionHub::Clock::now() + std::chrono::seconds(59)), 0)
        << "the idle time counts from the end of the last poll";
    EXPECT_EQ(hub.dropIdle(SubscriptionHub::Clock::now() + std::chrono::seconds(61)), 1);
    EXPECT_EQ(hub.count(), 0);
}
