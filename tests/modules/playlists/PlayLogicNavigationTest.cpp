#include "PlayLogicFixture.h"

#include <VexaPaths.h>

using log4cplus::ERROR_LOG_LEVEL;
using log4cplus::WARN_LOG_LEVEL;

namespace {

using PlayLogicNavigation = PlayLogicFixture;

} // namespace

TEST_F(PlayLogicNavigation, nextAndPreviousStopAtTheEndsUnlessRepeatAllWraps)
{
    PlayListBase* pl = list(5, false, false, 2);
    m_logic.setCurrentPlayList(pl);
    EXPECT_EQ(seqOf(m_logic.getNextTrack()), 3);
    EXPECT_EQ(seqOf(m_logic.getPreviousTrack()), 1);
    EXPECT_EQ(seqOf(m_logic.getCurrentTrack()), 2);

    pl->setLastSequenceNumber(4);
    EXPECT_TRUE(m_logic.getNextTrack().isEmpty());
    pl->setLastSequenceNumber(0);
    EXPECT_TRUE(m_logic.getPreviousTrack().isEmpty());
    m_logic.setRepeatMode(PlayListPlayLogic::RepeatAll);
    EXPECT_TRUE(pl->getRepeatAll());
    EXPECT_EQ(seqOf(m_logic.getPreviousTrack()), 4);
    pl->setLastSequenceNumber(4);
    EXPECT_EQ(seqOf(m_logic.getNextTrack()), 0);

    // Repeat-all over an empty list finds nothing and says so.
    m_logic.setCurrentPlayList(list(0));
    m_logic.setRepeatMode(PlayListPlayLogic::RepeatAll);
    EXPECT_TRUE(m_logic.getNextTrack().isEmpty());
    EXPECT_TRUE(m_logic.getPreviousTrack().isEmpty());
    EXPECT_EQ(m_log.messages(WARN_LOG_LEVEL),
              QStringList({QStringLiteral("Playlist should start from beginning again, but does not contain any tracks"),
                           QStringLiteral("Playlist should wrap around and continue with last track, but does not "
                                          "contain any tracks")}));
}

TEST_F(PlayLogicNavigation, fiveFailingStartsInARowAreSkippedAndTheSixthEndsPlayback)
{
    PlayListBase* pl = list(12);
    start(pl, 0);
    for (int i = 0; i < 3; ++i)
        failed(1);
    // 3 starts, which clears the error: the look-ahead finds none and the count begins anew.
    started(m_player.callsOf(QStringLiteral("play")).last().roles);
    m_logic.prepareNextMedia();
    for (int i = 0; i < 5; ++i)
        failed(1);
    EXPECT_EQ(sent(QStringLiteral("play")), QList<int>({0, 1, 2, 3, 5, 6, 7, 8, 9}));
    EXPECT_EQ(sent(QStringLiteral("setNextMedia")), QList<int>({4}));
    EXPECT_EQ(count(QStringLiteral("stop")), 0);

    failed(1);
    EXPECT_EQ(count(QStringLiteral("play")), 9);
    EXPECT_EQ(m_log.messages(ERROR_LOG_LEVEL), QStringList({QStringLiteral("Reached maximum error count exiting")}));
    ASSERT_EQ(count(QStringLiteral("stop")), 1);
    EXPECT_EQ(m_player.callsOf(QStringLiteral("stop")).first().number, int(VexaPlayLogicStopReason::EndOfContent));
    EXPECT_EQ(pl->getLastSequenceNumber(), 9);
}

TEST_F(PlayLogicNavigation, removingTheRunningEntryGoesOnWithTheOneInItsPlace)
{
    PlayListBase* pl = list(5);
    start(pl, 3);
    pl->removeItems({1, 3});
    EXPECT_EQ(lastSent(QStringLiteral("play")), 2);
    EXPECT_EQ(pl->getLastSequenceNumber(), 2);
    // The last entry goes while it plays: the end, unless the list repeats.
    pl->removeItems({2});
    EXPECT_EQ(count(QStringLiteral("stop")), 1);
    PlayListBase* repeating = list(3, false, true);
    start(repeating, 2);
    repeating->removeItems({2});
    EXPECT_EQ(lastSent(QStringLiteral("play")), 0);

    // Other entries go: the running one keeps playing, its number follows it.
    pl = list(4);
    start(pl, 2);
    started(m_player.callsOf(QStringLiteral("play")).last().roles);
    const int plays = count(QStringLiteral("play"));
    pl->removeItems({0});
    EXPECT_EQ(count(QStringLiteral("play")), plays);
    const QList<FakePlayer::Call> published = m_player.callsOf(QStringLiteral("publishData"));
    EXPECT_EQ(seqOf(published.last().data.trackRoles()), 1);
    EXPECT_EQ(published.last().data.trackRoles().title(), QStringLiteral("t2"));
    // Emptying the list stops the player and keeps the list current.
    pl->removeItems({0, 1, 2});
    EXPECT_EQ(count(QStringLiteral("stop")), 2);
    EXPECT_EQ(m_logic.currentPlayList(), pl);
}

TEST_F(PlayLogicNavigation, previousRestartsATrackPlayedLongerThanTheLimit)
{
    PlayListBase* pl = list(5);
    start(pl, 2);
    const CMSetDataRequest request(VexaPlayListsPlayLogicPath(), QVariant());
    m_player.position = VexaPreviousTrackTimeLimit();
    m_logic.previousInternal(request);
    EXPECT_EQ(lastSent(QStringLiteral("play")), 1);
    m_player.position = VexaPreviousTrackTimeLimit() + 1;
    m_logic.previousInternal(request);
    EXPECT_EQ(sent(QStringLiteral("play")), QList<int>({2, 1, 1}));

    // Nothing before the first entry: the request still succeeds, nothing plays.
    pl->setLastSequenceNumber(0);
    m_player.position = 0;
    const CMSetDataRequest first(VexaPlayListsPlayLogicPath(), QVariant());
    m_logic.previousInternal(first);
    EXPECT_EQ(count(QStringLiteral("play")), 3);
    EXPECT_TRUE(first.reply().isFinished());
    EXPECT_FALSE(first.reply().hasError());
}

TEST_F(PlayLogicNavigation, deletingTheCurrentPlaylistStopsItAndNoOtherDoes)
{
    PlayListBase* pl = list(3);
    start(pl, 0);
    ASSERT_TRUE(m_manager.deletePlayList(list(2)));
    EXPECT_EQ(count(QStringLiteral("stop")), 0);
    EXPECT_EQ(m_logic.currentPlayList(), pl);
    ASSERT_TRUE(m_manager.deletePlayList(pl));
    EXPECT_EQ(count(QStringLiteral("stop")), 1);
    EXPECT_EQ(m_logic.currentPlayList(), nullptr);
}
