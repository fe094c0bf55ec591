#include "SubscriptionTopicSet.h"

#include <CMPath.h>

#include <gtest/gtest.h>

TEST(SubscriptionTopicSet, ResetReachesThePathAndWhatContinuesItAfterSlashOrQuestionMark)
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
        SubscriptionTopicSet topics;
        topics.add(SubscriptionTopic(SubscriptionTopic::Kind::Rows, QString::fromLatin1(c.topic)));
        EXPECT_EQ(topics.rowsReachedBy(CMPath(c.reset).toEncoded()).size(), c.reaches ? 1 : 0)
            << c.reset << " -> " << c.topic;
    }
}

TEST(SubscriptionTopicSet, TopicsMatchByKindAndNormalisedPath)
{
    SubscriptionTopicSet topics;
    // The same path spelled with an unencoded and an encoded parameter value.
    topics.add(SubscriptionTopic(SubscriptionTopic::Kind::Rows, QStringLiteral("p:/l?name=a b")));
    topics.add(SubscriptionTopic(SubscriptionTopic::Kind::Rows, QStringLiteral("p:/l?name=a%20b")));
    topics.add(SubscriptionTopic(SubscriptionTopic::Kind::Value, QStringLiteral("settings:/a")));
    EXPECT_EQ(topics.size(), 2);
    const QString rowsPath = CMPath("p:/l?name=a%20b").toEncoded();
    EXPECT_TRUE(topics.hasRows(rowsPath));
    EXPECT_FALSE(topics.hasValue(rowsPath));
    EXPECT_TRUE(topics.hasValue(QStringLiteral("settings:/a")));
    EXPECT_FALSE(topics.hasRows(QStringLiteral("settings:/a")));
    EXPECT_EQ(topics.rowsReachedBy(QStringLiteral("settings:/a")), QStringList());

    topics.remove(SubscriptionTopic(SubscriptionTopic::Kind::Rows, QStringLiteral("p:/l?name=a b")));
    EXPECT_EQ(topics.size(), 1);
    EXPECT_EQ(topics.rowsReachedBy(QStringLiteral("p:/l")), QStringList());
}
