#include "SubscriptionHub.h"

#include <CMRootWorker.h>
#include <CMSubscribe.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

QList<SubscriptionTopic> rowsTopic(const QString& path)
{
    return {SubscriptionTopic(SubscriptionTopic::Kind::Rows, path)};
}

} // namespace

TEST(SubscriptionHub, RootNotificationsFromAnyThreadReachSubscriptionsAndWakeTheirWaiters)
{
    SubscriptionHub hub(CMRoot());
    const QString listening = hub.create(rowsTopic(QStringLiteral("hubtest:/list?x=1")));
    const QString other = hub.create(rowsTopic(QStringLiteral("hubtest:/elsewhere")));
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
    QVariantList events;
    ASSERT_TRUE(hub.takeEvents(listening, &events));
    ASSERT_EQ(events.size(), 2);
    EXPECT_EQ(events.at(0).toHash().value(QStringLiteral("change")).toString(), QStringLiteral("reset"));
    EXPECT_EQ(events.at(1).toHash().value(QStringLiteral("rows")).toList(), (QVariantList{4}));
    ASSERT_TRUE(hub.takeEvents(other, &events));
    EXPECT_TRUE(events.isEmpty());
}

TEST(SubscriptionHub, OnlySubscriptionsIdleBeyondTheLimitAndWithoutWaitersAreDropped)
{
    SubscriptionHub hub(CMRoot(), 1000, std::chrono::seconds(60));
    const QString idle = hub.create({});
    const QString waiting = hub.create({});
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
