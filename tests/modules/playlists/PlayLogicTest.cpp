#include "Database.h"
#include "PlayListBase.h"
#include "PlayListManager.h"
#include "PlayListPlayLogic.h"
#include "TestSupport.h"
#include "FakePlayer.h"

#include <CMNodes.h>
#include <VexaPlayer.h>
#include <VexaPaths.h>
#include <VexaPlayLogicChangePlayModeArgs.h>
#include <VexaPlayLogicRequest.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace {

// The module's play logic over a real store in a temporary directory, with a
// player that only notes what it is asked.
class PlayLogicFixture : public ::testing::Test
{
protected:
    PlayLogicFixture() { PlayLogicInterface::setPlayerInstance(&m_player); }
    ~PlayLogicFixture() override { PlayLogicInterface::setPlayerInstance(nullptr); }

    // A new playlist holding t0..t<size-1> with the stored flags and play position given.
    PlayListBase* list(int size, bool shuffle = false, bool repeatAll = false, int lastPlayed = -1)
    {
        PlayListBase* pl = m_manager.createPlayList(QString("p%1").arg(m_manager.getAllPlayList().size()));
        if (size > 0)
            pl->addItems(VexaPlayListAddPosition::Append, TestItems::make(size, "t"));
        pl->setShuffle(shuffle);
        pl->setRepeatAll(repeatAll);
        pl->setLastSequenceNumber(lastPlayed);
        return pl;
    }
    static VexaRoles container(const CMPath& path)
    {
        VexaRoles roles;
        roles.setType(VexaRolesType::Container);
        roles.setPath(path);
        return roles;
    }
    // The player's play command for pl at index; the request's reply.
    CMVoidReply start(PlayListBase* pl, int index)
    {
        return play(container(pl->getUid() == 0 ? VexaPlayListPqGetItemsPath()
                                                : VexaPlayListPlGetItemsPath().appended(QString::number(pl->getUid()))), index);
    }
    CMVoidReply play(const VexaRoles& container, int index, int type = 1, const VexaRoles& track = VexaRoles())
    {
        VexaPlayLogicPlayArgs args;
        args.setMediaRoles(container);
        args.setTrackRoles(track);
        args.setIndex(index);
        args.setType(type);
        const CMSetDataRequest request(VexaPlayListsPlayLogicPath(), args.toVariant());
        m_logic.playInternal(request, args);
        return request.reply();
    }
    // The player's callbacks, as the player sends them.
    void started(const VexaRoles& track)
    {
        VexaPlayLogicRequest request = VexaPlayLogicRequest::callback(VexaPlayLogicCallback::MediaPlaybackStarted);
        request.setNewRoles(track);
        m_logic.setDataRequest(CMSetDataRequest(VexaPlayListsPlayLogicPath(), request.toVariant()));
    }
    void failed(int code)
    {
        VexaPlayLogicRequest request = VexaPlayLogicRequest::callback(VexaPlayLogicCallback::TryResumePlayback);
        VexaError error;
        error.setCode(code);
        request.setStreamerError(error);
        m_logic.setDataRequest(CMSetDataRequest(VexaPlayListsPlayLogicPath(), request.toVariant()));
    }
    CMVoidReply changeMode(VexaPlayerPlayMode::Enum mode)
    {
        VexaPlayLogicChangePlayModeArgs args;
        args.setPlayMode(mode);
        const CMSetDataRequest request(VexaPlayListsPlayLogicPath(), args.toVariant());
        m_logic.changePlayModeInternal(request);
        return request.reply();
    }

    // Sequence numbers of the tracks the player was handed with op, oldest first (-1: none).
    QList<int> sent(const QString& op) const
    {
        QList<int> numbers;
        for (const FakePlayer::Call& call : m_player.callsOf(op))
            numbers.append(seqOf(call.roles));
        return numbers;
    }
    int lastSent(const QString& op) const { return sent(op).isEmpty() ? -2 : sent(op).last(); }
    int count(const QString& op) const { return m_player.callsOf(op).size(); }
    static int seqOf(const VexaRoles& roles) { return roles.value().contains(VexaValue::I32()) ? roles.value().i32() : -1; }
    // The player-visible play mode as last published.
    int publishedMode() const
    {
        const QList<FakePlayer::Call> modes = m_player.callsOf("publishPlayMode");
        return modes.isEmpty() ? -1 : modes.last().number;
    }
    static bool succeeded(const CMVoidReply& reply) { return reply.isFinished() && !reply.hasError(); }
    // The titles of the entries the shuffle order names, in its order.
    QStringList shuffledTitles(PlayListBase* pl) const
    {
        QStringList titles;
        for (int seq : m_logic.shuffleSequence())
            titles.append(pl->getItems(seq, seq).value(0).title());
        return titles;
    }

    WorkDir m_dir;
    LogCapture m_quiet{"PlayListsPlayLogic", log4cplus::WARN_LOG_LEVEL};
    Database m_db{0, false};
    PlayListManager m_manager{&m_db};
    CMNodes m_nodes;
    FakePlayer m_player;
    PlayListPlayLogic m_logic{&m_nodes, &m_manager};
};

using PlayLogicNavigation = PlayLogicFixture;
using PlayLogicPlayback = PlayLogicFixture;
using PlayLogicShuffle = PlayLogicFixture;

// Whether order holds each of 0..n-1 once.
bool isPermutation(QVector<int> order, int n)
{
    std::sort(order.begin(), order.end());
    QVector<int> all(n);
    std::iota(all.begin(), all.end(), 0);
    return order == all;
}

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
}

TEST_F(PlayLogicNavigation, fiveFailingStartsInARowAreSkippedAndTheSixthEndsPlayback)
{
    PlayListBase* pl = list(12);
    start(pl, 0);
    for (int i = 0; i < 3; ++i)
        failed(1);
    // 3 starts, which clears the error: the look-ahead finds none and the count begins anew.
    started(m_player.callsOf(QString("play")).last().roles);
    m_logic.prepareNextMedia();
    for (int i = 0; i < 5; ++i)
        failed(1);
    EXPECT_EQ(sent(QString("play")), QList<int>({0, 1, 2, 3, 5, 6, 7, 8, 9}));
    EXPECT_EQ(sent(QString("setNextMedia")), QList<int>({4}));
    EXPECT_EQ(count(QString("stop")), 0);

    failed(1);
    EXPECT_EQ(count(QString("play")), 9);
    ASSERT_EQ(count(QString("stop")), 1);
    EXPECT_EQ(m_player.callsOf(QString("stop")).first().number, int(VexaPlayLogicStopReason::EndOfContent));
    EXPECT_EQ(pl->getLastSequenceNumber(), 9);
}

TEST_F(PlayLogicNavigation, removingTheRunningEntryGoesOnWithTheOneInItsPlace)
{
    PlayListBase* pl = list(5);
    start(pl, 3);
    pl->removeItems({1, 3});
    EXPECT_EQ(lastSent(QString("play")), 2);
    EXPECT_EQ(pl->getLastSequenceNumber(), 2);
    // The last entry goes while it plays: the end, unless the list repeats.
    pl->removeItems({2});
    EXPECT_EQ(count(QString("stop")), 1);
    PlayListBase* repeating = list(3, false, true);
    start(repeating, 2);
    repeating->removeItems({2});
    EXPECT_EQ(lastSent(QString("play")), 0);

    // Other entries go: the running one keeps playing, its number follows it.
    pl = list(4);
    start(pl, 2);
    started(m_player.callsOf(QString("play")).last().roles);
    const int plays = count(QString("play"));
    pl->removeItems({0});
    EXPECT_EQ(count(QString("play")), plays);
    const QList<FakePlayer::Call> published = m_player.callsOf(QString("publishData"));
    EXPECT_EQ(seqOf(published.last().data.trackRoles()), 1);
    EXPECT_EQ(published.last().data.trackRoles().title(), QString("t2"));
    // Emptying the list stops the player and keeps the list current.
    pl->removeItems({0, 1, 2});
    EXPECT_EQ(count(QString("stop")), 2);
    EXPECT_EQ(m_logic.currentPlayList(), pl);
}

TEST_F(PlayLogicNavigation, previousRestartsATrackPlayedLongerThanTheLimit)
{
    PlayListBase* pl = list(5);
    start(pl, 2);
    const CMSetDataRequest request(VexaPlayListsPlayLogicPath(), QVariant());
    m_player.position = VexaPreviousTrackTimeLimit();
    m_logic.previousInternal(request);
    EXPECT_EQ(lastSent(QString("play")), 1);
    m_player.position = VexaPreviousTrackTimeLimit() + 1;
    m_logic.previousInternal(request);
    EXPECT_EQ(sent(QString("play")), QList<int>({2, 1, 1}));

    // Nothing before the first entry: the request still succeeds, nothing plays.
    pl->setLastSequenceNumber(0);
    m_player.position = 0;
    const CMSetDataRequest first(VexaPlayListsPlayLogicPath(), QVariant());
    m_logic.previousInternal(first);
    EXPECT_EQ(count(QString("play")), 3);
    EXPECT_TRUE(first.reply().isFinished());
    EXPECT_FALSE(first.reply().hasError());
}

TEST_F(PlayLogicNavigation, deletingTheCurrentPlaylistStopsItAndNoOtherDoes)
{
    PlayListBase* pl = list(3);
    start(pl, 0);
    ASSERT_TRUE(m_manager.deletePlayList(list(2)));
    EXPECT_EQ(count(QString("stop")), 0);
    EXPECT_EQ(m_logic.currentPlayList(), pl);
    ASSERT_TRUE(m_manager.deletePlayList(pl));
    EXPECT_EQ(count(QString("stop")), 1);
    EXPECT_EQ(m_logic.currentPlayList(), nullptr);
}

TEST_F(PlayLogicPlayback, thePlayCommandPlaysTheListItNamesOrRefusesAnInvalidOne)
{
    for (const QString& path : {QString("playlists:/tracks/0"), QString("playlists:/tracks/abc")}) {
        const CMVoidReply reply = play(container(CMPath(path)), 0);
        ASSERT_TRUE(reply.hasError()) << path.toStdString();
        EXPECT_EQ(reply.error().name(), QString("PlayList Error"));
        EXPECT_EQ(reply.error().title(), QString("Error"));
        EXPECT_EQ(reply.error().message(), QString("Play called on invalid playlist container"));
    }
    // Unknown lists and foreign containers play nothing, without complaint.
    EXPECT_TRUE(succeeded(play(container(CMPath("playlists:/tracks/99")), 0)));
    EXPECT_TRUE(succeeded(play(container(CMPath("testmod:/album")), 0)));
    EXPECT_EQ(count(QString("play")), 0);

    VexaRoles track;
    track.setTitle(QString("direct"));
    EXPECT_TRUE(succeeded(play(VexaRoles(), 0, 1, track)));
    EXPECT_EQ(m_player.callsOf(QString("play")).last().roles.title(), QString("direct"));
    EXPECT_EQ(m_logic.currentPlayList(), nullptr);

    PlayListBase* queue = m_manager.getPlayQueue();
    queue->addItems(VexaPlayListAddPosition::Append, TestItems::make(3, "q"));
    EXPECT_TRUE(succeeded(start(queue, 1)));
    EXPECT_EQ(m_logic.currentPlayList(), queue);
    EXPECT_EQ(m_player.callsOf(QString("play")).last().roles.title(), QString("q1"));

    // Not a play at an index: a container plays from its first entry.
    PlayListBase* pl = list(3, false, false, 2);
    play(container(VexaPlayListPlGetItemsPath().appended(QString::number(pl->getUid()))), 2, 0);
    EXPECT_EQ(lastSent(QString("play")), 0);
    // Past the end the player is asked to play nothing.
    start(pl, 7);
    EXPECT_TRUE(m_player.callsOf(QString("play")).last().roles.isEmpty());
}

TEST_F(PlayLogicPlayback, theAnnouncedNextEntryBecomesThePlayPositionWhenItStarts)
{
    PlayListBase* pl = list(5);
    start(pl, 1);
    m_logic.prepareNextMedia();
    EXPECT_EQ(sent(QString("setNextMedia")), QList<int>({2}));
    EXPECT_EQ(pl->getLastSequenceNumber(), 1);
    VexaRoles next = m_player.callsOf(QString("setNextMedia")).last().roles;
    VexaMediaData media;
    VexaMetaData meta;
    meta.setAllowSeekTime(false);
    media.setMetaData(meta);
    next.setMediaData(media);
    started(next);
    EXPECT_EQ(pl->getLastSequenceNumber(), 2);
    const VexaPlayLogicControls controls = m_player.callsOf(QString("publishData")).last().data.controls();
    EXPECT_TRUE(controls.pause() && controls.next_() && controls.previous());
    EXPECT_FALSE(controls.seekTime());

    // Stepping back forgets what was announced.
    m_logic.prepareNextMedia();
    m_logic.previousInternal(CMSetDataRequest(VexaPlayListsPlayLogicPath(), QVariant()));
    started(m_player.callsOf(QString("play")).last().roles);
    EXPECT_EQ(pl->getLastSequenceNumber(), 1);

    // Entries inserted after the running one follow it at once; appended ones do not.
    m_logic.prepareNextMedia();
    pl->addItems(VexaPlayListAddPosition::Next, TestItems::make(1, "n"));
    EXPECT_EQ(sent(QString("setNextMedia")), QList<int>({2, 3, 2, 2}));
    EXPECT_EQ(m_player.callsOf(QString("setNextMedia")).last().roles.title(), QString("n0"));
    pl->addItems(VexaPlayListAddPosition::Append, TestItems::make(1, "a"));
    EXPECT_EQ(count(QString("setNextMedia")), 4);

    // A change of mode announces anew: repeat-one the running entry, at the end nothing.
    changeMode(VexaPlayerPlayMode::RepeatOne);
    EXPECT_EQ(lastSent(QString("setNextMedia")), 1);
    pl->setLastSequenceNumber(pl->getSize() - 1);
    changeMode(VexaPlayerPlayMode::Normal);
    EXPECT_EQ(count(QString("clearNextMedia")), 1);
}

TEST_F(PlayLogicPlayback, aChangeOfModeSwitchesShuffleOnlyWhenItsShufflePartChanges)
{
    const auto hasShuffle = [](int mode) { return mode == 1 || mode == 3 || mode == 5; };
    PlayListBase* pl = list(4, false, false, 1);
    for (int from = 0; from <= 5; ++from) {
        for (int to = 0; to <= 5; ++to) {
            SCOPED_TRACE(testing::Message() << from << " -> " << to);
            pl->setShuffle(false);
            pl->setRepeatAll(false);
            start(pl, 1);
            changeMode(VexaPlayerPlayMode::Enum(from));
            const QVector<int> order = m_logic.shuffleSequence();
            EXPECT_TRUE(succeeded(changeMode(VexaPlayerPlayMode::Enum(to))));
            EXPECT_EQ(publishedMode(), to);
            EXPECT_EQ(m_logic.shuffleEnabled(), hasShuffle(to));
            EXPECT_EQ(pl->getShuffle(), hasShuffle(to));
            EXPECT_EQ(m_logic.repeatMode(), to >= 4 ? PlayListPlayLogic::RepeatAll : to >= 2 ? PlayListPlayLogic::RepeatOne
                                                              : PlayListPlayLogic::RepeatNone);
            EXPECT_EQ(pl->getRepeatAll(), to >= 4);
            // The order is drawn when shuffle comes on and left alone while it stays on.
            if (hasShuffle(from) && hasShuffle(to)) {
                EXPECT_EQ(m_logic.shuffleSequence(), order);
            } else if (hasShuffle(to)) {
                EXPECT_TRUE(isPermutation(m_logic.shuffleSequence(), 4) && m_logic.shuffleSequence().first() == 1);
            }
        }
    }
}

TEST_F(PlayLogicPlayback, theListsOwnFlagsOnlyChangeThePublishedMode)
{
    PlayListBase* pl = list(3);
    start(pl, 0);
    QList<int> modes;
    pl->setShuffle(true);
    modes.append(publishedMode());
    changeMode(VexaPlayerPlayMode::RepeatOne);
    pl->setShuffle(true);
    modes.append(publishedMode());
    changeMode(VexaPlayerPlayMode::RepeatAll);
    pl->setShuffle(true);
    modes.append(publishedMode());
    pl->setRepeatAll(false);
    modes.append(publishedMode());
    EXPECT_EQ(modes, QList<int>({1, 3, 5, 0}));
    EXPECT_FALSE(m_logic.shuffleEnabled());
    EXPECT_EQ(m_logic.repeatMode(), PlayListPlayLogic::RepeatAll);
}

TEST_F(PlayLogicPlayback, requestsReachTheListThroughTheBaseAndUnknownModesAreRefused)
{
    PlayListBase* pl = list(4);
    start(pl, 0);
    const auto send = [this](const QString& command, const QVariantHash& arguments = {}) {
        VexaPlayLogicRequest request = VexaPlayLogicRequest::command(VexaPlayLogicCommand::fromString(command));
        for (auto it = arguments.begin(); it != arguments.end(); ++it)
            request.insert(it.key(), it.value());
        const CMSetDataRequest set(VexaPlayListsPlayLogicPath(), request.toVariant());
        m_logic.setDataRequest(set);
        return set.reply();
    };
    EXPECT_TRUE(succeeded(send("next")));
    EXPECT_EQ(lastSent("play"), 1);
    EXPECT_TRUE(succeeded(send("changePlayMode", {{VexaPlayLogicChangePlayModeArgs::PlayMode(), "repeatAll"}})));
    EXPECT_EQ(publishedMode(), int(VexaPlayerPlayMode::RepeatAll));
    for (const QVariant& bad : {QVariant("loud"), QVariant(6), QVariant(-1), QVariant()}) {
        const CMVoidReply reply = send("changePlayMode", {{VexaPlayLogicChangePlayModeArgs::PlayMode(), bad}});
        EXPECT_EQ(reply.error().name(), CMError::BadRequestName()) << bad.toString().toStdString();
    }
    EXPECT_EQ(publishedMode(), int(VexaPlayerPlayMode::RepeatAll));
    EXPECT_EQ(m_logic.repeatMode(), PlayListPlayLogic::RepeatAll);
}

// The order is random, so it is checked by what must hold for every draw.
TEST_F(PlayLogicShuffle, theOrderIsAPermutationWithThePlayingEntryFirst)
{
    for (int size : {1, 2, 7}) {
        for (int start = -1; start < size; ++start) {
            SCOPED_TRACE(testing::Message() << size << " entries from " << start);
            PlayListBase* pl = list(size, false, false, start);
            m_logic.setCurrentPlayList(pl);
            m_logic.setShuffleEnabled(true);
            EXPECT_TRUE(pl->getShuffle());
            EXPECT_TRUE(isPermutation(m_logic.shuffleSequence(), size));
            EXPECT_EQ(m_logic.shuffleCurrentIndex(), 0);
            if (start >= 0) {
                EXPECT_EQ(m_logic.shuffleSequence().first(), start);
            }
        }
    }
    m_logic.setCurrentPlayList(nullptr);
    m_logic.initShuffle(0);
    EXPECT_TRUE(m_logic.shuffleSequence().isEmpty());
    EXPECT_EQ(m_logic.getNextShuffleItem(), -1);
}

TEST_F(PlayLogicShuffle, nextAndPreviousWalkTheOrderAndRepeatAllWraps)
{
    PlayListBase* pl = list(6, false, false, 2);
    m_logic.setCurrentPlayList(pl);
    m_logic.setShuffleEnabled(true);
    const QVector<int> order = m_logic.shuffleSequence();
    for (int k = 1; k < 6; ++k)
        EXPECT_EQ(m_logic.getNextShuffleItem(), order[k]);
    EXPECT_EQ(m_logic.getNextShuffleItem(), -1);
    for (int k = 4; k >= 0; --k)
        EXPECT_EQ(m_logic.getPrevShuffleItem(), order[k]);
    EXPECT_EQ(m_logic.getPrevShuffleItem(), -1);

    // Backwards the wrap keeps the order; forwards it starts a new pass.
    m_logic.setRepeatMode(PlayListPlayLogic::RepeatAll);
    EXPECT_EQ(m_logic.getPrevShuffleItem(), order[5]);
    EXPECT_EQ(m_logic.shuffleSequence(), order);
    const int first = m_logic.getNextShuffleItem();
    EXPECT_EQ(m_logic.shuffleCurrentIndex(), 0);
    EXPECT_EQ(first, m_logic.shuffleSequence().first());
    EXPECT_TRUE(isPermutation(m_logic.shuffleSequence(), 6));
    // The track that follows is the entry the order names.
    EXPECT_EQ(seqOf(m_logic.getNextTrack()), m_logic.shuffleSequence()[1]);
}

TEST_F(PlayLogicShuffle, listChangesKeepTheOrderOfTheEntriesThatStay)
{
    PlayListBase* pl = list(5, false, false, 1);
    m_logic.setCurrentPlayList(pl);
    m_logic.setShuffleEnabled(true);
    m_logic.getNextShuffleItem();
    const int cursor = m_logic.shuffleCurrentIndex();

    // Entries added after the play position follow the cursor, in order.
    QStringList titles = shuffledTitles(pl);
    pl->addItems(VexaPlayListAddPosition::Next, TestItems::make(2, "n"));
    titles.insert(cursor + 1, "n0");
    titles.insert(cursor + 2, "n1");
    EXPECT_EQ(shuffledTitles(pl), titles);
    EXPECT_TRUE(isPermutation(m_logic.shuffleSequence(), 7));

    // Appended entries are mixed into what has not played; what has stays.
    pl->addItems(VexaPlayListAddPosition::Append, TestItems::make(2, "a"));
    EXPECT_TRUE(isPermutation(m_logic.shuffleSequence(), 9));
    EXPECT_EQ(shuffledTitles(pl).mid(0, cursor + 1), titles.mid(0, cursor + 1));

    // Removals and moves renumber the order; the entries keep their places in it.
    titles = shuffledTitles(pl);
    const QString playing = titles.at(cursor);
    // One at a time: several numbers in one call are matched against the
    // order as the earlier ones left it, a rule of its own.
    QList<int> gone;
    for (int seq = 0; gone.isEmpty(); ++seq) {
        if (seq != m_logic.shuffleSequence().at(cursor) && seq != pl->getLastSequenceNumber())
            gone.prepend(seq);
    }
    for (int seq : gone)
        titles.removeOne(pl->getItems(seq, seq).value(0).title());
    pl->removeItems(gone);
    EXPECT_EQ(shuffledTitles(pl), titles);
    EXPECT_TRUE(isPermutation(m_logic.shuffleSequence(), 8));
    EXPECT_EQ(shuffledTitles(pl).at(m_logic.shuffleCurrentIndex()), playing);
    pl->moveItem(0, 1);
    EXPECT_EQ(shuffledTitles(pl), titles);

    // The entry under the cursor goes: next is what followed it.
    const int at = m_logic.shuffleCurrentIndex();
    const QString following = shuffledTitles(pl).at(at + 1);
    pl->removeItems({m_logic.shuffleSequence().at(at)});
    const int next = m_logic.getNextShuffleItem();
    EXPECT_EQ(pl->getItems(next, next).value(0).title(), following);
}

TEST_F(PlayLogicShuffle, startingAListTakesItsFlagsAndShufflesFromItsStoredPosition)
{
    PlayListBase* pl = list(5, true, true, 4);
    start(pl, 2);
    EXPECT_EQ(publishedMode(), int(VexaPlayerPlayMode::ShuffleRepeatAll));
    EXPECT_EQ(m_logic.shuffleSequence().first(), 4);
    EXPECT_EQ(m_logic.repeatMode(), PlayListPlayLogic::RepeatAll);
    EXPECT_EQ(lastSent("play"), 2);

    // The next start begins from nothing and leaves the other list's flags alone.
    start(list(2), 0);
    EXPECT_EQ(publishedMode(), int(VexaPlayerPlayMode::Normal));
    EXPECT_FALSE(m_logic.shuffleEnabled());
    EXPECT_TRUE(m_logic.shuffleSequence().isEmpty());
    EXPECT_TRUE(pl->getShuffle() && pl->getRepeatAll());
}
