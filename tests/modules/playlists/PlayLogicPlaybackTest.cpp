#include "PlayLogicFixture.h"
#include "TestSupport.h"

#include <VexaPaths.h>

namespace {

using PlayLogicPlayback = PlayLogicFixture;

VexaRoles container(const QString& path)
{
    VexaRoles roles;
    roles.setType(VexaRolesType::Container);
    roles.setPath(CMPath(path));
    return roles;
}

bool succeeded(const CMVoidReply& reply)
{
    return reply.isFinished() && !reply.hasError();
}

} // namespace

TEST_F(PlayLogicPlayback, thePlayCommandPlaysTheListItNamesOrRefusesAnInvalidOne)
{
    for (const QString& path : {QStringLiteral("playlists:/tracks/0"), QStringLiteral("playlists:/tracks/abc")}) {
        const CMVoidReply reply = play(container(path), 0);
        ASSERT_TRUE(reply.hasError()) << path.toStdString();
        EXPECT_EQ(reply.error().name(), QStringLiteral("PlayList Error"));
        EXPECT_EQ(reply.error().title(), QStringLiteral("Error"));
        EXPECT_EQ(reply.error().message(), QStringLiteral("Play called on invalid playlist container"));
    }
    // Unknown lists and foreign containers play nothing, without complaint.
    EXPECT_TRUE(succeeded(play(container(QStringLiteral("playlists:/tracks/99")), 0)));
    EXPECT_TRUE(succeeded(play(container(QStringLiteral("testmod:/album")), 0)));
    EXPECT_EQ(count(QStringLiteral("play")), 0);

    VexaRoles track;
    track.setTitle(QStringLiteral("direct"));
    EXPECT_TRUE(succeeded(play(VexaRoles(), 0, 1, track)));
    EXPECT_EQ(m_player.callsOf(QStringLiteral("play")).last().roles.title(), QStringLiteral("direct"));
    EXPECT_EQ(m_logic.currentPlayList(), nullptr);

    PlayListBase* queue = m_manager.getPlayQueue();
    queue->addItems(VexaPlayListAddPosition::Append, TestItems::make(3, "q"));
    EXPECT_TRUE(succeeded(start(queue, 1)));
    EXPECT_EQ(m_logic.currentPlayList(), queue);
    EXPECT_EQ(m_player.callsOf(QStringLiteral("play")).last().roles.title(), QStringLiteral("q1"));

    // Not a play at an index: a container plays from its first entry.
    PlayListBase* pl = list(3, false, false, 2);
    play(container(VexaPlayListPlGetItemsPath().appended(QString::number(pl->getUid())).toEncoded()), 2, 0);
    EXPECT_EQ(lastSent(QStringLiteral("play")), 0);
    // Past the end the player is asked to play nothing.
    start(pl, 7);
    EXPECT_TRUE(m_player.callsOf(QStringLiteral("play")).last().roles.isEmpty());
}

TEST_F(PlayLogicPlayback, theAnnouncedNextEntryBecomesThePlayPositionWhenItStarts)
{
    PlayListBase* pl = list(5);
    start(pl, 1);
    m_logic.prepareNextMedia();
    EXPECT_EQ(sent(QStringLiteral("setNextMedia")), QList<int>({2}));
    EXPECT_EQ(pl->getLastSequenceNumber(), 1);
    VexaRoles next = m_player.callsOf(QStringLiteral("setNextMedia")).last().roles;
    VexaMediaData media;
    VexaMetaData meta;
    meta.setAllowSeekTime(false);
    media.setMetaData(meta);
    next.setMediaData(media);
    started(next);
    EXPECT_EQ(pl->getLastSequenceNumber(), 2);
    const VexaPlayLogicControls controls = m_player.callsOf(QStringLiteral("publishData")).last().data.controls();
    EXPECT_TRUE(controls.pause() && controls.next_() && controls.previous());
    EXPECT_FALSE(controls.seekTime());

    // Stepping back forgets what was announced.
    m_logic.prepareNextMedia();
    m_logic.previousInternal(CMSetDataRequest(VexaPlayListsPlayLogicPath(), QVariant()));
    started(m_player.callsOf(QStringLiteral("play")).last().roles);
    EXPECT_EQ(pl->getLastSequenceNumber(), 1);

    // Entries inserted after the running one follow it at once; appended ones do not.
    m_logic.prepareNextMedia();
    pl->addItems(VexaPlayListAddPosition::Next, TestItems::make(1, "n"));
    EXPECT_EQ(sent(QStringLiteral("setNextMedia")), QList<int>({2, 3, 2, 2}));
    EXPECT_EQ(m_player.callsOf(QStringLiteral("setNextMedia")).last().roles.title(), QStringLiteral("n0"));
    pl->addItems(VexaPlayListAddPosition::Append, TestItems::make(1, "a"));
    EXPECT_EQ(count(QStringLiteral("setNextMedia")), 4);

    // A change of mode announces anew: repeat-one the running entry, at the end nothing.
    changeMode(VexaPlayerPlayMode::RepeatOne);
    EXPECT_EQ(lastSent(QStringLiteral("setNextMedia")), 1);
    pl->setLastSequenceNumber(pl->getSize() - 1);
    changeMode(VexaPlayerPlayMode::Normal);
    EXPECT_EQ(count(QStringLiteral("clearNextMedia")), 1);
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
            m_log.clear();
            EXPECT_TRUE(succeeded(changeMode(VexaPlayerPlayMode::Enum(to))));
            EXPECT_EQ(publishedMode(), to);
            EXPECT_EQ(m_logic.shuffleEnabled(), hasShuffle(to));
            EXPECT_EQ(pl->getShuffle(), hasShuffle(to));
            EXPECT_EQ(m_logic.repeatMode(), to >= 4 ? PlayListPlayLogic::RepeatAll
                                                    : to >= 2 ? PlayListPlayLogic::RepeatOne
                                                              : PlayListPlayLogic::RepeatNone);
            EXPECT_EQ(pl->getRepeatAll(), to >= 4);
            const int rebuilt = m_log.startingWith(QStringLiteral("Enter PlayListPlayLogic::initShuffle")).size();
            EXPECT_EQ(rebuilt, hasShuffle(to) && !hasShuffle(from) ? 1 : 0);
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
