#include "FakePlayer.h"

#include <CMNodes.h>
#include <CMNodesWorker.h>
#include <StreamerPlayLogic.h>
#include <VexaPlayLogicChangePlayModeArgs.h>

#include <gtest/gtest.h>

namespace {

// A play logic that notes which of its operations the base calls, and what
// its data held at that moment. Commands are answered here with the name of
// the operation; callbacks go on to the base's defaults.
class ProbePlayLogic : public StreamerPlayLogic
{
public:
    using StreamerPlayLogic::StreamerPlayLogic;

    void playInternal(const CMSetDataRequest& request, const VexaPlayLogicPlayArgs& args) override
    {
        playArgs = args;
        answer("playInternal", request);
    }
    void stopInternal(const CMSetDataRequest& request) override { answer("stopInternal", request); }
    void pauseInternal(const CMSetDataRequest& request) override { answer("pauseInternal", request); }
    void previousInternal(const CMSetDataRequest& request) override { answer("previousInternal", request); }
    void nextInternal(const CMSetDataRequest& request) override { answer("nextInternal", request); }
    void seekTimeInternal(const CMSetDataRequest& request) override { answer("seekTimeInternal", request); }
    void seekBytesInternal(const CMSetDataRequest& request) override { answer("seekBytesInternal", request); }
    void likeInternal(const CMSetDataRequest& request) override { answer("likeInternal", request); }
    void dislikeInternal(const CMSetDataRequest& request) override { answer("dislikeInternal", request); }
    void setCurrentTrackInternal(const CMSetDataRequest& request) override { answer("setCurrentTrackInternal", request); }
    void changePlayModeInternal(const CMSetDataRequest& request) override { answer("changePlayModeInternal", request); }

    void prepareNextMedia() override
    {
        calls.append("prepareNextMedia");
        StreamerPlayLogic::prepareNextMedia();
    }
    VexaPlayLogicData translatePlayLogicStatus(const VexaPlayLogicData& data) override
    {
        VexaPlayLogicData translated = data;
        translated.insert("translated", true);
        return translated;
    }
    VexaPlayLogicData mediaPlaybackStarted(const VexaRoles& oldRoles, const VexaRoles& newRoles) override
    {
        calls.append("mediaPlaybackStarted");
        dataSeen = data();
        oldRolesSeen = oldRoles;
        newRolesSeen = newRoles;
        return StreamerPlayLogic::mediaPlaybackStarted(oldRoles, newRoles);
    }
    void tryResumePlayback() override
    {
        calls.append("tryResumePlayback");
        dataSeen = data();
        StreamerPlayLogic::tryResumePlayback();
    }
    void playbackStopped() override { calls.append("playbackStopped"); }
    void playbackEnded() override
    {
        calls.append("playbackEnded");
        StreamerPlayLogic::playbackEnded();
    }
    bool handleAlternate(const CMSetDataRequest& request) override
    {
        calls.append("handleAlternate");
        if (takeAlternate)
            request.reply().setData("alternate");
        return takeAlternate;
    }
    void playTimeChangedInternal(qint64 playTimeMs) override
    {
        calls.append("playTimeChanged");
        playTimeSeen = playTimeMs;
    }

    QStringList calls;
    VexaPlayLogicPlayArgs playArgs;
    VexaPlayLogicData dataSeen;
    VexaRoles oldRolesSeen;
    VexaRoles newRolesSeen;
    qint64 playTimeSeen = -1;
    // Whether the request was already answered when the operation ran.
    bool replyFinishedSeen = false;
    bool takeAlternate = false;

private:
    void answer(const QString& call, const CMSetDataRequest& request)
    {
        calls.append(call);
        replyFinishedSeen = request.reply().isFinished();
        request.reply().setData(call);
    }
};

const CMPath kPath("probe:/playlogic");

VexaRoles track(const QString& title)
{
    return VexaRoles({{"title", title}, {"type", "audio"}});
}

class StreamerPlayLogicTest : public ::testing::Test
{
protected:
    void SetUp() override { PlayLogicInterface::setPlayerInstance(&m_player); }
    void TearDown() override { PlayLogicInterface::setPlayerInstance(nullptr); }

    // Hands value to the node as the player would; taken tells whether the node took it.
    CMVoidReply send(StreamerPlayLogic& logic, const QVariant& value, bool* taken = nullptr)
    {
        const CMSetDataRequest request(kPath, value);
        const bool result = logic.setDataRequest(request);
        if (taken)
            *taken = result;
        return request.reply();
    }

    static QVariantHash command(const QString& name, const QVariantHash& arguments = {})
    {
        QVariantHash value = arguments;
        value.insert(VexaPlayLogicRequest::Command(), name);
        return value;
    }
    static QVariantHash callback(const QString& name, const QVariantHash& arguments = {})
    {
        QVariantHash value = arguments;
        value.insert(VexaPlayLogicRequest::Callback(), name);
        return value;
    }

    FakePlayer m_player;
    CMNodes m_nodes;
};

TEST_F(StreamerPlayLogicTest, EveryCommandReachesItsInternalOperation)
{
    ProbePlayLogic logic(&m_nodes, kPath);
    EXPECT_EQ(m_nodes.find(kPath), &logic);

    const QStringList names = {"play",     "stop",      "pause",     "previous",        "next",          "like",
                               "dislike",  "seekTime",  "seekBytes", "setCurrentTrack", "changePlayMode"};
    for (const QString& name : names) {
        bool taken = false;
        const CMVoidReply reply = send(logic, command(name, {{"playMode", "shuffle"}}), &taken);
        EXPECT_TRUE(taken) << name.toStdString();
        EXPECT_EQ(logic.calls.last(), name + QStringLiteral("Internal"));
        EXPECT_FALSE(logic.replyFinishedSeen) << name.toStdString();
        ASSERT_TRUE(reply.isFinished()) << name.toStdString();
        EXPECT_EQ(reply.data().toString(), name + QStringLiteral("Internal"));
    }
    EXPECT_EQ(logic.calls.size(), names.size());

    // The play arguments are decoded from the request, without the command's name.
    VexaRoles container = track("Album");
    container.setType(VexaRolesType::Container);
    VexaPlayLogicPlayArgs args;
    args.setMediaRoles(container);
    args.setTrackRoles(track("Song"));
    args.setIndex(3);
    args.setType(1);
    send(logic, command("play", args.hash()));
    EXPECT_EQ(logic.playArgs, args);
    EXPECT_EQ(logic.playArgs.mediaRoles().title(), "Album");
    EXPECT_EQ(logic.playArgs.index(), 3);

    // Commands also arrive by number.
    send(logic, command("4"));
    EXPECT_EQ(logic.calls.last(), "nextInternal");
}

TEST_F(StreamerPlayLogicTest, CallbacksRunAndAreAnsweredAfterwards)
{
    ProbePlayLogic logic(&m_nodes, kPath);
    VexaPlayLogicData earlier;
    VexaError oldError;
    oldError.setCode(5);
    earlier.setStreamerError(oldError);
    earlier.setError(oldError);
    earlier.setTrackRoles(track("Old"));
    logic.setData(earlier);
    m_player.calls.clear();

    // A media starts: the play logic already sees the new track in its data,
    // and what it returns is translated and published without the old errors.
    VexaPlayLogicRequest started = VexaPlayLogicRequest::callback(VexaPlayLogicCallback::MediaPlaybackStarted);
    started.setOldRoles(track("Old"));
    started.setNewRoles(track("New"));
    CMVoidReply reply = send(logic, started.hash());
    EXPECT_TRUE(reply.isFinished());
    EXPECT_FALSE(reply.hasError());
    EXPECT_EQ(logic.oldRolesSeen.title(), "Old");
    EXPECT_EQ(logic.newRolesSeen.title(), "New");
    EXPECT_EQ(logic.dataSeen.trackRoles().title(), "New");
    ASSERT_EQ(m_player.ops(), QStringList({"publishData"}));
    const VexaPlayLogicData published = m_player.calls.first().data;
    EXPECT_EQ(m_player.calls.first().path, kPath);
    EXPECT_EQ(published.trackRoles().title(), "New");
    EXPECT_TRUE(published.value("translated").toBool());
    EXPECT_FALSE(published.contains(VexaPlayLogicData::StreamerError()));
    EXPECT_FALSE(published.contains(VexaPlayLogicData::Error()));
    EXPECT_EQ(logic.data(), published);

    // The default preparation tells the player that nothing follows.
    m_player.calls.clear();
    reply = send(logic, callback("prepareNextMedia"));
    EXPECT_TRUE(reply.isFinished());
    EXPECT_EQ(logic.calls.last(), "prepareNextMedia");
    ASSERT_EQ(m_player.ops(), QStringList({"clearNextMedia"}));
    EXPECT_EQ(m_player.calls.first().path, kPath);

    // A failed start: the error is in the data when tryResumePlayback runs,
    // is not published back, and by default playback ends.
    m_player.calls.clear();
    VexaPlayLogicRequest failed = VexaPlayLogicRequest::callback(VexaPlayLogicCallback::TryResumePlayback);
    VexaError error;
    error.setCode(404);
    error.setMessage("gone");
    failed.setStreamerError(error);
    reply = send(logic, failed.hash());
    EXPECT_TRUE(reply.isFinished());
    EXPECT_EQ(logic.dataSeen.streamerError().code(), 404);
    EXPECT_EQ(logic.data().streamerError().message(), "gone");
    EXPECT_EQ(logic.calls.mid(logic.calls.size() - 2), QStringList({"tryResumePlayback", "playbackEnded"}));
    ASSERT_EQ(m_player.ops(), QStringList({"stop"}));
    EXPECT_EQ(m_player.calls.first().number, int(VexaPlayLogicStopReason::EndOfContent));

    reply = send(logic, callback("playTimeChanged", {{"playTimeMs", 1234}}));
    EXPECT_TRUE(reply.isFinished());
    EXPECT_EQ(logic.playTimeSeen, 1234);
    send(logic, callback("playbackStopped"));
    EXPECT_EQ(logic.calls.last(), "playbackStopped");
}

TEST_F(StreamerPlayLogicTest, UnknownRequestsGoToHandleAlternateOrAreRefused)
{
    ProbePlayLogic logic(&m_nodes, kPath);
    const QVariantList unknown = {QVariantHash{{"command", "dance"}}, QVariantHash{{"callback", "sing"}},
                                  QVariantHash{{"command", 99}},      QVariantHash{{"callback", QVariantList()}},
                                  QVariantHash(),                     QVariant("play"),
                                  QVariant()};
    for (const QVariant& value : unknown) {
        logic.calls.clear();
        bool taken = true;
        const CMVoidReply reply = send(logic, value, &taken);
        EXPECT_FALSE(taken);
        EXPECT_FALSE(reply.isFinished());
        EXPECT_EQ(logic.calls, QStringList({"handleAlternate"}));
    }

    logic.takeAlternate = true;
    bool taken = false;
    const CMVoidReply reply = send(logic, QVariantHash{{"command", "dance"}}, &taken);
    EXPECT_TRUE(taken);
    EXPECT_EQ(reply.data().toString(), "alternate");

    // Through a worker, what the node refuses is answered as an unknown path.
    logic.takeAlternate = false;
    CMNodesWorker worker({{"prefix", "probe"}}, "Probe");
    ProbePlayLogic routed(worker.nodes(), kPath);
    const CMVoidReply refused;
    worker.setDataRequest(CMSetDataRequest(kPath, QVariantHash{{"command", "dance"}}, refused));
    ASSERT_TRUE(refused.isFinished());
    EXPECT_EQ(refused.error().name(), CMError::InvalidPathName());
}

TEST_F(StreamerPlayLogicTest, BaseDefaultsRefuseWhatAPlayLogicMustImplement)
{
    StreamerPlayLogic logic(&m_nodes, kPath);
    EXPECT_TRUE(logic.playModesSupported().isEmpty());

    for (const QString& name : QStringList{"play", "previous", "next", "seekTime", "seekBytes", "like", "dislike",
                                           "setCurrentTrack"}) {
        const CMVoidReply reply = send(logic, command(name));
        ASSERT_TRUE(reply.isFinished()) << name.toStdString();
        EXPECT_TRUE(reply.hasError()) << name.toStdString();
        EXPECT_TRUE(reply.error().message().contains(name)) << reply.error().message().toStdString();
    }
    EXPECT_TRUE(m_player.calls.isEmpty());

    CMVoidReply reply = send(logic, command("pause"));
    EXPECT_TRUE(reply.isFinished());
    EXPECT_FALSE(reply.hasError());
    EXPECT_TRUE(m_player.calls.isEmpty());

    reply = send(logic, command("stop"));
    EXPECT_TRUE(reply.isFinished());
    EXPECT_FALSE(reply.hasError());
    ASSERT_EQ(m_player.ops(), QStringList({"stop"}));
    EXPECT_EQ(m_player.calls.first().number, int(VexaPlayLogicStopReason::Stopped));
}

TEST_F(StreamerPlayLogicTest, ChangePlayModePublishesKnownModesOnly)
{
    StreamerPlayLogic logic(&m_nodes, kPath);
    EXPECT_EQ(logic.playMode(), VexaPlayerPlayMode::Normal);

    CMVoidReply reply = send(logic, command("changePlayMode", {{"playMode", "repeatAll"}}));
    EXPECT_TRUE(reply.isFinished());
    EXPECT_FALSE(reply.hasError());
    EXPECT_EQ(logic.playMode(), VexaPlayerPlayMode::RepeatAll);
    reply = send(logic, command("changePlayMode", {{"playMode", 3}}));
    EXPECT_FALSE(reply.hasError());
    EXPECT_EQ(logic.playMode(), VexaPlayerPlayMode::ShuffleRepeatOne);
    ASSERT_EQ(m_player.ops(), QStringList({"publishPlayMode", "publishPlayMode"}));
    const QList<FakePlayer::Call>& published = m_player.calls;
    EXPECT_EQ(published.at(0).number, int(VexaPlayerPlayMode::RepeatAll));
    EXPECT_EQ(published.at(1).number, int(VexaPlayerPlayMode::ShuffleRepeatOne));
    EXPECT_EQ(published.at(1).path, kPath);

    m_player.calls.clear();
    for (const QVariant& bad : {QVariant("loud"), QVariant(6), QVariant(-1), QVariant(), QVariant(QVariantList{1})}) {
        QVariantHash arguments;
        if (bad.isValid())
            arguments.insert(VexaPlayLogicChangePlayModeArgs::PlayMode(), bad);
        reply = send(logic, command("changePlayMode", arguments));
        ASSERT_TRUE(reply.isFinished());
        EXPECT_EQ(reply.error().name(), CMError::BadRequestName()) << bad.toString().toStdString();
    }
    EXPECT_TRUE(m_player.calls.isEmpty());
    EXPECT_EQ(logic.playMode(), VexaPlayerPlayMode::ShuffleRepeatOne);
}

TEST_F(StreamerPlayLogicTest, PlayLogicReachesTheInstalledPlayerOrOneThatPlaysNothing)
{
    class Sender : public StreamerPlayLogic
    {
    public:
        using StreamerPlayLogic::StreamerPlayLogic;
        using StreamerPlayLogic::sendNoNextMediaCommand;
        using StreamerPlayLogic::sendPlayCommand;
        using StreamerPlayLogic::sendSetNextMediaCommand;
    };
    Sender logic(&m_nodes, kPath);
    m_player.position = 4321;
    EXPECT_EQ(logic.playTime(), 4321);
    EXPECT_TRUE(logic.sendPlayCommand(track("One"), {}));
    EXPECT_TRUE(logic.sendSetNextMediaCommand(track("Two"), {}));
    EXPECT_TRUE(logic.sendNoNextMediaCommand());
    ASSERT_EQ(m_player.ops(), QStringList({"play", "setNextMedia", "clearNextMedia"}));
    EXPECT_EQ(m_player.calls.at(0).roles.title(), "One");
    EXPECT_EQ(m_player.calls.at(1).roles.title(), "Two");
    for (const FakePlayer::Call& call : m_player.calls)
        EXPECT_EQ(call.path, kPath);

    PlayLogicInterface::setPlayerInstance(nullptr);
    VexaPlayer* nothing = PlayLogicInterface::playerInstance();
    ASSERT_NE(nothing, nullptr);
    EXPECT_NE(nothing, &m_player);
    EXPECT_FALSE(logic.sendPlayCommand(track("One"), {}));
    EXPECT_FALSE(nothing->playContainer(track("Album"), track("One"), 0, 0, false));
    EXPECT_EQ(logic.playTime(), 0);
    logic.setPlayMode(VexaPlayerPlayMode::Shuffle);
    EXPECT_EQ(logic.playMode(), VexaPlayerPlayMode::Shuffle);
    EXPECT_EQ(m_player.calls.size(), 3);
}

} // namespace
