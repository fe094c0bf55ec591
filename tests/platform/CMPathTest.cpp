#include <CMPath.h>
#include <VexaPaths.h>

#include <gtest/gtest.h>

TEST(CMPath, ParsesPrefixPathAndParametersInOrder)
{
    const CMPath p(QStringLiteral("playlists:/menu/playlist?action=rename&plid=3"));
    EXPECT_EQ(p.prefix(), "playlists");
    EXPECT_EQ(p.path(), "/menu/playlist");
    ASSERT_EQ(p.params().size(), 2);
    EXPECT_EQ(p.params().at(0).first, "action");
    EXPECT_EQ(p.param("plid"), "3");
    EXPECT_EQ(p.base(), "playlists:/menu/playlist");
    EXPECT_EQ(CMPath("playlists:/tracks/12").splitBase(), QStringList({"tracks", "12"}));
    EXPECT_EQ(CMPath("x:/a//b/").splitBase(), QStringList({"a", "b"}));
    EXPECT_EQ(CMPath("playlists:/tracks/12?x=1").lastSegment(), "12");
    EXPECT_EQ(CMPath("p:").lastSegment(), QString());
}

TEST(CMPath, AddingAnExistingNameReplacesItsValueInPlace)
{
    CMPath p = VexaPlayListPlContextPath();
    p.addParam("action", "play").addParam("plid", "1").addParam("action", "rename");
    EXPECT_EQ(p.toEncoded(), "playlists:/menu/playlist?action=rename&plid=1");
    EXPECT_FALSE(p.hasParam("clid"));
    EXPECT_EQ(p.param("clid"), QString());
}

TEST(CMPath, EncodedPathsTravelAsParameterValuesAndComeBackExactly)
{
    CMPath item = VexaPlayListItemPath().appended("42");
    item.addParam("q", "a&b=c?d%e f/ü");
    CMPath menu = VexaPlayListPlSelectAddModePath();
    menu.addParam("itemid", item.toEncoded()).addParam("plid", "0");
    const QString text = menu.toEncoded();
    // The inner path must not leak separators into the outer one.
    EXPECT_EQ(text.count('?'), 1);
    EXPECT_EQ(text.count('&'), 1);
    const CMPath parsed(text);
    EXPECT_EQ(parsed, menu);
    EXPECT_EQ(CMPath(parsed.param("itemid")), item);
    EXPECT_EQ(CMPath(parsed.param("itemid")).param("q"), "a&b=c?d%e f/ü");
    // Twice nested still round trips.
    CMPath outer("a:/b");
    outer.addParam("inner", menu.toEncoded());
    EXPECT_EQ(CMPath(CMPath(outer.toEncoded()).param("inner")), menu);
}

TEST(CMPath, EqualityIncludesParametersAndPrefixMatchingStopsAtSegments)
{
    EXPECT_NE(CMPath("p:/a?x=1"), CMPath("p:/a?x=2"));
    EXPECT_NE(CMPath("p:/a"), CMPath("q:/a"));
    EXPECT_TRUE(CMPath("playlists:/tracks/12").startsWith(VexaPlayListPlGetItemsPath()));
    EXPECT_FALSE(CMPath("playlists:/tracks12").startsWith(VexaPlayListPlGetItemsPath()));
    EXPECT_FALSE(CMPath("playlists:/tracks/12").startsWith(CMPath("playlists:/tracks/1")));
    EXPECT_EQ(CMPath::fromPrefix("library").prefix(), "library");
    CMPath prepare = CMPath::fromPrefix("library");
    prepare.setPath(VexaPlayListPrepareItems());
    EXPECT_EQ(prepare.toEncoded(), "library:/prepare-items");
}
