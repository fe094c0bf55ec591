#include "Subscription.h"

#include <CMPath.h>
#include <VexaJson.h>
#include <VexaValue.h>

#include <gtest/gtest.h>

namespace {

QStringList eventPaths(const QVariantList& events)
{
    QStringList paths;
    for (const QVariant& event : events)
        paths.append(event.toHash().value(QStringLiteral("path")).toString());
    return paths;
}

} // namespace

TEST(Subscription, ResetReachesThePathAndWhatContinuesItAfterSlashOrQuestionMark)
{
    struct Case
    {
        const char* reset;
        const char* topic;
        bool reaches;
    };
    const Case cases[] = {
        {"playlists:/menu/playlist", "playlists:/menu/playlist", true},
        {"playlists:/menu/playlist", "playlists:/menu/playlist?plid=3", true},
        {"playlists:/menu/playlist", "playlists:/menu/playlist/sub", true},
        {"playlists:/tracks/1", "playlists:/tracks/12", false},
        {"playlists:/tracks/1", "playlists:/tracks/1?plid=2", true},
        {"playlists:/menu/playlist?plid=3", "playlists:/menu/playlist?plid=3", true},
        {"playlists:/menu/playlist?plid=3", "playlists:/menu/playlist?plid=34", false},
        {"playlists:/menu/playlist?plid=3", "playlists:/menu/playlist", false},
        {"playlists:/root", "library:/root", false},
        {"playlists:/", "playlists:/tracks/1", true},
        {"playlists:/tracks", "playlists:/tracksX", false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Subscription::resetReaches(CMPath(c.reset).toEncoded(), CMPath(c.topic).toEncoded()), c.reaches)
            << c.reset << " -> " << c.topic;
    }
}

TEST(Subscription, EventsReachOnlyTheTopicsOfTheirKindAndPath)
{
    Subscription s(100);
    s.subscribe(SubscriptionTopic(SubscriptionTopic::Kind::Rows, QStringLiteral("p:/list?id=1")));
    s.subscribe(SubscriptionTopic(SubscriptionTopic::Kind::Rows, QStringLiteral("p:/list/child")));
    s.subscribe(SubscriptionTopic(SubscriptionTopic::Kind::Value, QStringLiteral("settings:/a")));

    // A value change at a rows topic's path, and inserts below or above one, reach nothing.
    EXPECT_FALSE(s.offerValue(QStringLiteral("p:/list/child"), QVariantHash()));
    EXPECT_FALSE(s.offerRowsInserted(QStringLiteral("p:/list"), {1}));
    EXPECT_FALSE(s.offerRowsInserted(QStringLiteral("settings:/a"), {1}));
    EXPECT_FALSE(s.hasEvents());

    const VexaValue value({{QStringLiteral("type"), QStringLiteral("i32_")}, {QStringLiteral("i32_"), 5}});
    EXPECT_TRUE(s.offerValue(QStringLiteral("settings:/a"), value.toVariant()));
    EXPECT_TRUE(s.offerRowsInserted(QStringLiteral("p:/list/child"), {7, 8, 9}));
    // One reset reaching two topics gives one event for each, named by the topic.
    EXPECT_TRUE(s.offerRowsReset(QStringLiteral("p:/list")));

    const QVariantList events = s.takeEvents();
    ASSERT_EQ(events.size(), 4);
    EXPECT_EQ(VexaJson::toJson(events.at(0)),
              VexaJson::toJson(QVariantHash{{QStringLiteral("path"), QStringLiteral("settings:/a")},
                                            {QStringLiteral("kind"), QStringLiteral("value")},
                                            {QStringLiteral("value"), value.toVariant()}}));
    const QVariantHash insert = events.at(1).toHash();
    EXPECT_EQ(insert.value(QStringLiteral("change")).toString(), QStringLiteral("insert"));
    EXPECT_EQ(insert.value(QStringLiteral("rows")).toList(), (QVariantList{7, 8, 9}));
    EXPECT_EQ(eventPaths(events.mid(2)), (QStringList{QStringLiteral("p:/list?id=1"), QStringLiteral("p:/list/child")}));
    EXPECT_EQ(events.at(3).toHash().value(QStringLiteral("change")).toString(), QStringLiteral("reset"));
    EXPECT_FALSE(s.hasEvents());
}

TEST(Subscription, TopicsCompareInNormalisedFormAndAFullQueueDropsTheOldestEvents)
{
    Subscription s(3);
    // The same path spelled with an unencoded and an encoded parameter value.
    s.subscribe(SubscriptionTopic(SubscriptionTopic::Kind::Rows, QStringLiteral("p:/l?name=a b")));
    s.subscribe(SubscriptionTopic(SubscriptionTopic::Kind::Rows, QStringLiteral("p:/l?name=a%20b")));
    EXPECT_EQ(s.topics().size(), 1);
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(s.offerRowsInserted(CMPath("p:/l?name=a%20b").toEncoded(), {i}));
    const QVariantList events = s.takeEvents();
    ASSERT_EQ(events.size(), 3);
    EXPECT_EQ(events.first().toHash().value(QStringLiteral("rows")).toList(), (QVariantList{2}));
    EXPECT_EQ(events.last().toHash().value(QStringLiteral("rows")).toList(), (QVariantList{4}));
    EXPECT_EQ(s.droppedEvents(), 2);

    s.unsubscribe(SubscriptionTopic(SubscriptionTopic::Kind::Rows, QStringLiteral("p:/l?name=a b")));
    EXPECT_TRUE(s.topics().isEmpty());
    EXPECT_FALSE(s.offerRowsReset(QStringLiteral("p:/l")));
}
