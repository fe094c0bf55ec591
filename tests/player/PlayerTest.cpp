#include "EmulatedPlayer.h"
#include "PlayerFixture.h"

namespace {

// A track of 30 s passes in 30 ms.
constexpr double kScale = 1000.0;

class PlayerTest : public PlayerFixture
{
protected:
    std::unique_ptr<Player> makePlayer() override { return std::make_unique<EmulatedPlayer>(kScale); }
};

TEST_F(PlayerTest, AQueuePlaysThroughWithoutGapsAndEnds)
{
    const QList<VexaRoles> tracks = {track("One", 30), track("Two", 30), track("Three", 30)};
    const CMReply<QVariant> reply = control(playControl(container(tracks), 0));
    ASSERT_FALSE(reply.hasError()) << reply.error().message().toStdString();
    ASSERT_TRUE(waitForEvent("playbackEnded"));

    // Each track asks for its successor in its last ten seconds, and the
    // next starts from the one before it.
    expectPlayedThrough(tracks);
    for (const RecordingPlayLogic::Event& prepare : logic()->eventsNamed("prepareNextMedia")) {
        EXPECT_GE(prepare.playTimeMs, 30000 - Player::PrepareAheadMs);
        EXPECT_LE(prepare.playTimeMs, 30000);
    }
    EXPECT_EQ(logic()->eventsNamed("play").first().playType, 1);

    const QVariantHash finalStatus = status();
    EXPECT_EQ(finalStatus.value("state"), "stopped");
    EXPECT_FALSE(finalStatus.value("track").isValid());
    EXPECT_EQ(finalStatus.value("playLogicPath"), kLogicPath.toEncoded());
    EXPECT_EQ(titleOf(finalStatus.value("container")), "Album");
    EXPECT_EQ(position(), 0);

    // Subscribers saw the tracks follow one another with no stop between them.
    QStringList seen;
    for (const ValueEvent& event : valuesAt(Player::statusPath())) {
        const QString eventState = event.newValue.value("state").toString();
        const QString title = eventState == "stopped" ? QStringLiteral("-") : titleOf(event.newValue.value("track"));
        if (seen.isEmpty() || seen.last() != title)
            seen.append(title);
    }
    EXPECT_EQ(seen, QStringList({"-", "One", "Two", "Three", "-"}));
    const QList<ValueEvent> statusEvents = valuesAt(Player::statusPath());
    for (int i = 1; i < statusEvents.size(); ++i)
        EXPECT_EQ(statusEvents[i].oldValue, statusEvents[i - 1].newValue) << i;
    const QList<ValueEvent> positions = valuesAt(Player::positionPath());
    ASSERT_GE(positions.size(), 4);
    EXPECT_EQ(positions.last().newValue.type(), VexaValue::I64());
    EXPECT_EQ(positions.last().newValue.i64_(), 0);
}

TEST_F(PlayerTest, PlayStartsAtTheIndexAndTheCallerHearsThePlayLogicsAnswer)
{
    const QList<VexaRoles> tracks = {track("One", 3600), track("Two", 3600), track("Three", 3600)};
    const VexaRoles album = container(tracks);
    ASSERT_FALSE(control(playControl(album, 1)).hasError());
    ASSERT_TRUE(waitForEvent("mediaPlaybackStarted"));
    EXPECT_EQ(logic()->eventsNamed("mediaPlaybackStarted").first().newRoles, tracks[1]);
    EXPECT_EQ(logic()->eventsNamed("play").first().newRoles, tracks[1]);
    // The controls arrive with the play logic's answer to the start, after the track shows.
    ASSERT_TRUE(waitFor([&]() {
        const QVariantHash now = status();
        return titleOf(now.value("track")) == "Two" && now.value("controls").toHash().contains(VexaPlayLogicControls::Next_());
    }));
    const QVariantHash playing = status();
    EXPECT_EQ(playing.value("state"), "playing");
    EXPECT_EQ(playing.value("durationMs").toLongLong(), 3600000);
    EXPECT_EQ(VexaRoles(playing.value("container").toHash()), album);
    EXPECT_TRUE(VexaPlayLogicControls(playing.value("controls").toHash()).next_());
    EXPECT_FALSE(playing.value("error").isValid());

    // The play logic refuses an index it does not have: the caller gets its error.
    CMReply<QVariant> reply = control(playControl(album, 7));
    ASSERT_TRUE(reply.hasError());
    EXPECT_EQ(reply.error().message(), "The container has no track 7");
    // A container whose play logic nobody serves.
    reply = control(playControl(container(tracks, CMPath("nowhere:/playlogic")), 0));
    ASSERT_TRUE(reply.hasError());
    EXPECT_EQ(reply.error().name(), CMError::InvalidPathName());
    // Neither refusal disturbed what plays.
    EXPECT_EQ(logic()->eventsNamed("mediaPlaybackStarted").size(), 1);
    const QVariantHash after = status();
    EXPECT_EQ(after.value("state"), "playing");
    EXPECT_EQ(titleOf(after.value("track")), "Two");
    EXPECT_EQ(VexaRoles(after.value("container").toHash()), album);
}

TEST_F(PlayerTest, ATrackThatFailsToStartAsksThePlayLogicToResumeWithTheErrorCode)
{
    const QList<VexaRoles> tracks = {track("One", 30), track("Broken", 30, "error:404"), track("Three", 30)};
    ASSERT_FALSE(control(playControl(container(tracks), 0)).hasError());
    ASSERT_TRUE(waitForEvent("playbackEnded"));

    const QList<RecordingPlayLogic::Event> resumed = logic()->eventsNamed("tryResumePlayback");
    ASSERT_EQ(resumed.size(), 1);
    EXPECT_EQ(resumed.first().errorCode, 404);
    const QList<RecordingPlayLogic::Event> started = logic()->eventsNamed("mediaPlaybackStarted");
    ASSERT_EQ(started.size(), 2);
    EXPECT_EQ(started[0].newRoles, tracks[0]);
    EXPECT_EQ(started[1].newRoles, tracks[2]);
    EXPECT_TRUE(started[1].oldRoles.isEmpty()) << "nothing played between the failure and the next track";

    bool reported = false;
    for (const ValueEvent& event : valuesAt(Player::statusPath())) {
        const VexaError error(event.newValue.value("error").toHash());
        if (error.code() == 404) {
            reported = true;
            EXPECT_EQ(titleOf(event.newValue.value("track")), "Broken");
            EXPECT_EQ(event.newValue.value("state"), "stopped");
        }
    }
    EXPECT_TRUE(reported);
    // A track that starts clears the error.
    EXPECT_FALSE(status().value("error").isValid());

    // Nothing to resume with: playback ends, and the status keeps the reason.
    ASSERT_FALSE(control(playControl(container({track("Lost", 30, "error:gone")}), 0)).hasError());
    ASSERT_TRUE(waitForEvent("playbackEnded", 2));
    EXPECT_EQ(logic()->eventsNamed("tryResumePlayback").last().errorCode, Player::MediaUnavailableCode);
    const QVariantHash ended = status();
    EXPECT_EQ(ended.value("state"), "stopped");
    EXPECT_EQ(VexaError(ended.value("error").toHash()).code(), Player::MediaUnavailableCode);
}

TEST_F(PlayerTest, PauseResumeAndSeekMoveThePositionAndState)
{
    ASSERT_FALSE(control(playControl(container({track("Long", 3600)}), 0)).hasError());
    ASSERT_TRUE(waitForState("playing"));

    ASSERT_FALSE(control("pause").hasError());
    EXPECT_EQ(state(), "paused");
    const qint64 pausedAt = position();
    QThread::msleep(20);
    EXPECT_EQ(position(), pausedAt);
    EXPECT_TRUE(control("pause").hasError());
    ASSERT_FALSE(control("resume").hasError());
    ASSERT_FALSE(control("pause").hasError());

    ASSERT_FALSE(control("seek", {{"positionMs", 1000000}}).hasError());
    EXPECT_EQ(position(), 1000000);
    EXPECT_EQ(valuesAt(Player::positionPath()).last().newValue.i64_(), 1000000);
    ASSERT_FALSE(control("seek", {{"positionMs", "1200000"}}).hasError());
    EXPECT_EQ(position(), 1200000);

    ASSERT_FALSE(control("resume").hasError());
    EXPECT_EQ(state(), "playing");
    EXPECT_TRUE(control("resume").hasError());
    // While playing, the position is announced about once a second.
    const int announced = valuesAt(Player::positionPath()).size();
    ASSERT_TRUE(waitFor([&]() { return valuesAt(Player::positionPath()).size() > announced; }, 3000));
    const ValueEvent tick = valuesAt(Player::positionPath()).last();
    EXPECT_GT(tick.newValue.i64_(), tick.oldValue.i64_());
    EXPECT_GT(position(), 1200000);

    for (const QVariant& bad : {QVariant(3600001), QVariant(-1), QVariant("soon"), QVariant(1.5), QVariant()}) {
        const CMReply<QVariant> reply = control("seek", bad.isValid() ? QVariantHash{{"positionMs", bad}} : QVariantHash());
        ASSERT_TRUE(reply.hasError()) << bad.toString().toStdString();
        EXPECT_EQ(reply.error().name(), CMError::BadRequestName()) << bad.toString().toStdString();
    }
    EXPECT_EQ(state(), "playing");

    // Seeking to the last second ends the track soon after.
    ASSERT_FALSE(control("seek", {{"positionMs", 3599000}}).hasError());
    ASSERT_TRUE(waitForEvent("playbackEnded"));
    EXPECT_EQ(state(), "stopped");
    EXPECT_EQ(position(), 0);
    EXPECT_TRUE(control("pause").hasError());
    EXPECT_TRUE(control("resume").hasError());
    EXPECT_TRUE(control("seek", {{"positionMs", 0}}).hasError());
}

TEST_F(PlayerTest, PlayModeIsThePlayLogicsAndChangesThroughIt)
{
    VexaValue repeatAll;
    repeatAll.setPlayerPlayMode(VexaPlayerPlayMode::RepeatAll);
    EXPECT_TRUE(invoke(Player::playModePath(), repeatAll.toVariant()).hasError()) << "no play logic yet";
    EXPECT_EQ(VexaValue(CMRoot()->getValue(Player::playModePath()).toHash()).playerPlayMode(),
              VexaPlayerPlayMode::Normal);

    ASSERT_FALSE(control(playControl(container({track("One", 3600)}), 0)).hasError());
    const CMReply<QVariant> set;
    CMRoot()->setValue(Player::playModePath(), repeatAll, set);
    ASSERT_TRUE(set.waitForFinished(10000));
    ASSERT_FALSE(set.hasError()) << set.error().message().toStdString();
    EXPECT_EQ(logic()->names().count("changePlayMode"), 1);
    EXPECT_EQ(VexaValue(CMRoot()->getValue(Player::playModePath()).toHash()), repeatAll);
    EXPECT_EQ(status().value("playMode"), "repeatAll");
    const QList<ValueEvent> modes = valuesAt(Player::playModePath());
    ASSERT_EQ(modes.size(), 1);
    EXPECT_EQ(modes.first().newValue, repeatAll);
    EXPECT_EQ(modes.first().oldValue.playerPlayMode(), VexaPlayerPlayMode::Normal);

    for (const QVariant& bad : {QVariant(QVariantHash{{"type", "i32_"}, {"i32_", 1}}),
                                QVariant(QVariantHash{{"type", "playerPlayMode"}, {"playerPlayMode", "loud"}}),
                                QVariant(QVariantHash{{"type", "playerPlayMode"}, {"playerPlayMode", 6}}),
                                QVariant("shuffle"), QVariant()}) {
        const CMReply<QVariant> reply = invoke(Player::playModePath(), bad);
        ASSERT_TRUE(reply.hasError());
        EXPECT_EQ(reply.error().name(), CMError::BadRequestName());
    }
    EXPECT_FALSE(invoke(Player::playModePath(), QVariantHash{{"type", "playerPlayMode"}, {"playerPlayMode", 1}}).hasError());
    EXPECT_EQ(status().value("playMode"), "shuffle");
    ASSERT_FALSE(control("stop").hasError());
}

TEST_F(PlayerTest, StopNextAndPreviousGoToThePlayLogic)
{
    EXPECT_TRUE(control("next").hasError());
    EXPECT_TRUE(control("previous").hasError());
    EXPECT_FALSE(control("stop").hasError()) << "stopping nothing is no error";

    const QList<VexaRoles> tracks = {track("One", 3600), track("Two", 3600)};
    ASSERT_FALSE(control(playControl(container(tracks), 0)).hasError());
    ASSERT_FALSE(control("next").hasError());
    ASSERT_TRUE(waitForEvent("mediaPlaybackStarted", 2));
    const RecordingPlayLogic::Event started = logic()->eventsNamed("mediaPlaybackStarted").last();
    EXPECT_EQ(started.oldRoles, tracks[0]);
    EXPECT_EQ(started.newRoles, tracks[1]);
    ASSERT_FALSE(control("previous").hasError());
    ASSERT_FALSE(control("stop").hasError());
    EXPECT_EQ(state(), "stopped");
    EXPECT_FALSE(status().value("track").isValid());
    for (const char* forwarded : {"next", "previous", "stop"})
        EXPECT_EQ(logic()->names().count(forwarded), 1) << forwarded;
}

TEST_F(PlayerTest, AnotherPlayLogicTakesOverAndTheFormerCannotStopIt)
{
    PlayLogicThread other(QStringLiteral("otherplay"));
    const CMPath otherPath(QStringLiteral("otherplay:/playlogic"));
    ASSERT_FALSE(control(playControl(container({track("Mine", 3600)}), 0)).hasError());
    ASSERT_TRUE(waitForState("playing"));

    ASSERT_FALSE(control(playControl(container({track("Theirs", 3600)}, otherPath), 0)).hasError());
    ASSERT_TRUE(waitFor([&]() { return other.logic()->eventsNamed("mediaPlaybackStarted").size() == 1; }));
    ASSERT_TRUE(waitForEvent("playbackStopped"));
    EXPECT_TRUE(other.logic()->eventsNamed("mediaPlaybackStarted").first().oldRoles.isEmpty());
    EXPECT_EQ(status().value("playLogicPath"), otherPath.toEncoded());
    EXPECT_EQ(titleOf(status().value("track")), "Theirs");

    // The former play logic, late, can neither stop nor play over the new one.
    EXPECT_FALSE(m_player->stopPlayLogic(kLogicPath, VexaPlayLogicStopReason::EndOfContent));
    EXPECT_FALSE(m_player->play(kLogicPath, track("Again", 30), {}));
    EXPECT_FALSE(m_player->setNextMedia(kLogicPath, track("Later", 30), {}));
    EXPECT_EQ(state(), "playing");
    EXPECT_TRUE(m_player->stop(VexaPlayLogicStopReason::Stopped));
    EXPECT_EQ(state(), "stopped");
    EXPECT_FALSE(m_player->stop(VexaPlayLogicStopReason::Stopped));
}

TEST_F(PlayerTest, BadRequestsAreRefusedWithoutHarm)
{
    const QVariantHash album = container({track("One", 30)}).hash();
    VexaRoles anonymous(album);
    anonymous.setMediaData(VexaMediaData());
    const QVariantList bad = {
        QVariant(),
        QVariant(QVariantList{"play"}),
        QVariant(QVariantHash()),
        QVariant(QVariantHash{{"control", 1}}),
        QVariant(QVariantHash{{"control", "play"}}),
        QVariant(QVariantHash{{"control", "play"}, {"container", "Album"}}),
        QVariant(QVariantHash{{"control", "play"}, {"container", anonymous.toVariant()}}),
        QVariant(QVariantHash{{"control", "play"}, {"container", album}, {"track", "One"}}),
        QVariant(QVariantHash{{"control", "play"}, {"container", album}, {"index", -1}}),
        QVariant(QVariantHash{{"control", "play"}, {"container", album}, {"index", 0.5}}),
    };
    for (const QVariant& value : bad) {
        const CMReply<QVariant> reply = invoke(Player::controlPath(), value);
        ASSERT_TRUE(reply.hasError()) << value.toString().toStdString();
        EXPECT_EQ(reply.error().name(), CMError::BadRequestName());
    }
    EXPECT_EQ(invoke(Player::statusPath(), QVariantHash{{"state", "playing"}}).error().name(), CMError::BadRequestName());
    EXPECT_EQ(invoke(Player::positionPath(), 5).error().name(), CMError::BadRequestName());
    EXPECT_EQ(invoke(CMPath("player:/loudness"), 5).error().name(), CMError::InvalidPathName());
    EXPECT_FALSE(CMRoot()->getValue(CMPath("player:/loudness")).isValid());
    EXPECT_TRUE(logic()->names().isEmpty());
    EXPECT_EQ(state(), "stopped");

    // The player's own interface refuses as calmly.
    EXPECT_FALSE(m_player->playContainer(anonymous, track("One", 30), 0, 0, false));
    EXPECT_FALSE(m_player->play(kLogicPath, VexaRoles(), {}));
    EXPECT_FALSE(m_player->clearNextMedia(kLogicPath));
    EXPECT_EQ(m_player->positionMs(), 0);

    // A container with a null track and no index still plays from its first track.
    ASSERT_FALSE(control(QVariantHash{{"control", "play"}, {"container", album}, {"track", QVariant::fromValue(nullptr)}})
                     .hasError());
    ASSERT_TRUE(waitForEvent("mediaPlaybackStarted"));
}

TEST_F(PlayerTest, PlayContainerStartsWherePlaybackIsAskedToStart)
{
    ASSERT_TRUE(m_player->playContainer(container({track("Long", 3600)}), track("Long", 3600), 0, 120000, true));
    ASSERT_TRUE(waitForState("paused"));
    EXPECT_EQ(position(), 120000);
    ASSERT_TRUE(waitForEvent("mediaPlaybackStarted"));
    EXPECT_TRUE(m_player->stopPlayLogic(kLogicPath, VexaPlayLogicStopReason::Stopped));
    EXPECT_EQ(state(), "stopped");
}

} // namespace
