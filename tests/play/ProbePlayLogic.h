#pragma once

#include <StreamerPlayLogic.h>

#include <QStringList>

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
