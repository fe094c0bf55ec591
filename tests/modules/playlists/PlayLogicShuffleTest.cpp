#include "PlayLogicFixture.h"
#include "TestSupport.h"

#include <cstdlib>
#include <numeric>

namespace {

using PlayLogicShuffle = PlayLogicFixture;

QVector<int> identity(int n)
{
    QVector<int> order(n);
    std::iota(order.begin(), order.end(), 0);
    return order;
}

// What randomising order from index from draws when the clock reads now:
// rand() seeded with the time, each later position swapped with one at or before it.
QVector<int> drawn(QVector<int> order, int from, std::time_t now)
{
    srand(now);
    for (int i = from + 1; i < order.size(); ++i)
        std::swap(order[i], order[from + rand() % (i - from + 1)]);
    return order;
}

// The order that building shuffle over n entries starting with start makes at now.
QVector<int> initial(int n, int start, std::time_t now)
{
    QVector<int> order = drawn(identity(n), 0, now);
    if (order.removeOne(start))
        order.prepend(start);
    return order;
}

// A clock reading at which building shuffle over n entries starting with start gives want.
std::time_t clockFor(int n, int start, const QVector<int>& want)
{
    for (std::time_t now = 1; now < 100000; ++now) {
        if (initial(n, start, now) == want)
            return now;
    }
    ADD_FAILURE() << "no clock reading draws the wanted order";
    return 0;
}

} // namespace

TEST_F(PlayLogicShuffle, theOrderIsDrawnFromTheClockWithThePlayingEntryFirst)
{
    TestClock clock(1000);
    PlayListBase* pl = list(5, false, false, 3);
    m_logic.setCurrentPlayList(pl);
    m_logic.setShuffleEnabled(true);
    EXPECT_EQ(m_logic.shuffleSequence(), initial(5, 3, 1000));
    EXPECT_EQ(m_logic.shuffleSequence().first(), 3);
    EXPECT_EQ(m_logic.shuffleCurrentIndex(), 0);
    EXPECT_TRUE(pl->getShuffle());

    // No starting entry, or one the list does not have: the draw as it came.
    clock.set(2000);
    m_logic.initShuffle(-1);
    EXPECT_EQ(m_logic.shuffleSequence(), drawn(identity(5), 0, 2000));
    ASSERT_NE(drawn(identity(5), 0, 2000), drawn(identity(5), 0, 3000));
    clock.set(3000);
    m_logic.initShuffle(9);
    EXPECT_EQ(m_logic.shuffleSequence(), drawn(identity(5), 0, 3000));
    EXPECT_EQ(m_logic.shuffleCurrentIndex(), 0);

    // An empty list keeps the order it had; no list at all empties it.
    m_logic.setCurrentPlayList(list(0));
    m_logic.initShuffle(0);
    EXPECT_TRUE(m_log.contains(log4cplus::TRACE_LOG_LEVEL, QStringLiteral("size <= 0")));
    EXPECT_EQ(m_logic.shuffleSequence(), drawn(identity(5), 0, 3000));
    m_logic.setCurrentPlayList(nullptr);
    m_logic.initShuffle(0);
    EXPECT_TRUE(m_logic.shuffleSequence().isEmpty());
    EXPECT_EQ(m_logic.shuffleCurrentIndex(), -1);
}

TEST_F(PlayLogicShuffle, randomisingMixesOnlyTheRangeAndAlwaysReseeds)
{
    TestClock clock(500);
    m_logic.setCurrentPlayList(list(7));
    m_logic.initShuffle(-1);
    const QVector<int> before = m_logic.shuffleSequence();
    clock.set(501);
    m_logic.randomizeShuffleItems(2);
    EXPECT_EQ(m_logic.shuffleSequence(), drawn(before, 2, 501));

    // Out of range nothing moves, yet the generator was seeded from the clock.
    const QVector<int> after = m_logic.shuffleSequence();
    for (int from : {-1, 7}) {
        clock.set(600 + from);
        m_logic.randomizeShuffleItems(from);
        const int next = rand();
        srand(600 + from);
        EXPECT_EQ(next, rand()) << from;
        EXPECT_EQ(m_logic.shuffleSequence(), after);
    }
}

TEST_F(PlayLogicShuffle, nextAndPreviousWalkTheOrderAndRepeatAllWrapsWithAFreshDraw)
{
    TestClock clock(42);
    PlayListBase* pl = list(5, false, false, 0);
    m_logic.setCurrentPlayList(pl);
    m_logic.setShuffleEnabled(true);
    const QVector<int> order = initial(5, 0, 42);
    for (int k = 1; k < 5; ++k)
        EXPECT_EQ(m_logic.getNextShuffleItem(), order[k]);
    EXPECT_EQ(m_logic.getNextShuffleItem(), -1);
    EXPECT_EQ(m_logic.shuffleCurrentIndex(), 4);
    for (int k = 3; k >= 0; --k)
        EXPECT_EQ(m_logic.getPrevShuffleItem(), order[k]);
    EXPECT_EQ(m_logic.getPrevShuffleItem(), -1);
    EXPECT_EQ(m_logic.shuffleCurrentIndex(), 0);

    // Backwards the wrap keeps the order; forwards it draws a new one.
    m_logic.setRepeatMode(PlayListPlayLogic::RepeatAll);
    EXPECT_EQ(m_logic.getPrevShuffleItem(), order[4]);
    EXPECT_EQ(m_logic.shuffleCurrentIndex(), 4);
    EXPECT_EQ(m_logic.shuffleSequence(), order);
    clock.set(43);
    const QVector<int> fresh = drawn(order, 0, 43);
    EXPECT_EQ(m_logic.getNextShuffleItem(), fresh[0]);
    EXPECT_EQ(m_logic.shuffleSequence(), fresh);
    EXPECT_EQ(m_logic.shuffleCurrentIndex(), 0);
    // The track that follows is the entry the order names.
    EXPECT_EQ(seqOf(m_logic.getNextTrack()), fresh[1]);

    m_logic.setCurrentPlayList(nullptr);
    m_logic.initShuffle(0);
    EXPECT_EQ(m_logic.getNextShuffleItem(), -1);
    EXPECT_EQ(m_logic.getPrevShuffleItem(), -1);
}

TEST_F(PlayLogicShuffle, addedEntriesPlayNextOrMixIntoWhatIsLeft)
{
    TestClock clock(7);
    PlayListBase* pl = list(3, false, false, 0);
    m_logic.setCurrentPlayList(pl);
    m_logic.setShuffleEnabled(true);
    const QVector<int> o = initial(3, 0, 7);

    // Inserted after the play position (1..3): they come right after the cursor, in order.
    pl->addItems(VexaPlayListAddPosition::Next, TestItems::make(3, "n"));
    EXPECT_EQ(m_logic.shuffleSequence(), QVector<int>({0, 1, 2, 3, o[1] + 3, o[2] + 3}));
    EXPECT_EQ(m_logic.getNextShuffleItem(), 1);
    pl->addItems(VexaPlayListAddPosition::Now, TestItems::make(1, "m"));
    EXPECT_EQ(m_logic.shuffleSequence(), QVector<int>({0, 2, 1, 3, 4, o[1] + 4, o[2] + 4}));
    EXPECT_EQ(m_logic.shuffleCurrentIndex(), 1);

    // Appended entries: each one is mixed into the part after the cursor.
    clock.set(8);
    QVector<int> expected = m_logic.shuffleSequence();
    pl->addItems(VexaPlayListAddPosition::Append, TestItems::make(2, "z"));
    for (int value : {7, 8}) {
        expected.append(value);
        expected = drawn(expected, 2, 8);
    }
    EXPECT_EQ(m_logic.shuffleSequence(), expected);
    EXPECT_EQ(m_logic.shuffleCurrentIndex(), 1);
}

TEST_F(PlayLogicShuffle, removedAndMovedEntriesAreRenumberedInTheOrder)
{
    PlayListBase* pl = list(4, false, false, 0);
    {
        TestClock clock(clockFor(4, 0, {0, 1, 2, 3}));
        m_logic.setCurrentPlayList(pl);
        m_logic.setShuffleEnabled(true);
    }
    m_logic.getNextShuffleItem();
    m_logic.getNextShuffleItem();
    pl->removeItems({1});
    EXPECT_EQ(m_logic.shuffleSequence(), QVector<int>({0, 1, 2}));
    EXPECT_EQ(m_logic.shuffleCurrentIndex(), 1);

    // Each removed number is matched against the order as the earlier ones
    // left it: removing {0, 1} from [1, 3, 0, 2] leaves [0, 1].
    pl = list(4, false, false, 1);
    {
        TestClock clock(clockFor(4, 1, {1, 3, 0, 2}));
        m_logic.setCurrentPlayList(pl);
        m_logic.setShuffleEnabled(true);
    }
    pl->removeItems({0, 1});
    EXPECT_EQ(m_logic.shuffleSequence(), QVector<int>({0, 1}));
    EXPECT_EQ(m_logic.shuffleCurrentIndex(), 0);
    // The running entry went: the one now in its place in list order plays.
    EXPECT_EQ(lastSent(QStringLiteral("play")), 0);

    // A move swaps the two numbers in the order; the cursor stays.
    pl = list(4, false, false, 3);
    {
        TestClock clock(clockFor(4, 3, {3, 1, 0, 2}));
        m_logic.setCurrentPlayList(pl);
        m_logic.setShuffleEnabled(true);
    }
    pl->moveItem(0, 3);
    EXPECT_EQ(m_logic.shuffleSequence(), QVector<int>({0, 1, 3, 2}));
    EXPECT_EQ(m_logic.shuffleCurrentIndex(), 0);
    EXPECT_EQ(pl->getLastSequenceNumber(), 2);
}

TEST_F(PlayLogicShuffle, startingAListTakesItsFlagsAndShufflesFromItsStoredPosition)
{
    TestClock clock(99);
    PlayListBase* pl = list(5, true, true, 4);
    start(pl, 2);
    EXPECT_EQ(publishedMode(), int(VexaPlayerPlayMode::ShuffleRepeatAll));
    EXPECT_EQ(m_logic.shuffleSequence(), initial(5, 4, 99));
    EXPECT_EQ(m_logic.repeatMode(), PlayListPlayLogic::RepeatAll);
    EXPECT_EQ(lastSent(QStringLiteral("play")), 2);
    EXPECT_EQ(pl->getLastSequenceNumber(), 2);

    // The next start begins from nothing and leaves the other list's flags alone.
    start(list(2), 0);
    EXPECT_EQ(publishedMode(), int(VexaPlayerPlayMode::Normal));
    EXPECT_FALSE(m_logic.shuffleEnabled());
    EXPECT_EQ(m_logic.repeatMode(), PlayListPlayLogic::RepeatNone);
    EXPECT_TRUE(m_logic.shuffleSequence().isEmpty());
    EXPECT_EQ(m_logic.shuffleCurrentIndex(), -1);
    EXPECT_TRUE(pl->getShuffle() && pl->getRepeatAll());
}
