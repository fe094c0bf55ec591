#pragma once

#include <StreamerPlayLogic.h>

#include <QStringList>

// A play logic that notes which of its operations the base calls, and what
// its data held at that moment. Commands are answered here; callbacks go on
// to the base's defaults.
class ProbePlayLogic : public StreamerPlayLogic
{
public:
    using StreamerPlayLogic::StreamerPlayLogic;

    void playInternal(const CMSetDataRequest& request, const VexaPlayLogicPlayArgs& args) override;
    void stopInternal(const CMSetDataRequest& request) override;
    void pauseInternal(const CMSetDataRequest& request) override;
    void previousInternal(const CMSetDataRequest& request) override;
    void nextInternal(const CMSetDataRequest& request) override;
    void seekTimeInternal(const CMSetDataRequest& request) override;
    void seekBytesInternal(const CMSetDataRequest& request) override;
    void likeInternal(const CMSetDataRequest& request) override;
    void dislikeInternal(const CMSetDataRequest& request) override;
    void setCurrentTrackInternal(const CMSetDataRequest& request) override;
    void changePlayModeInternal(const CMSetDataRequest& request) override;
    void prepareNextMedia() override;
    VexaPlayLogicData translatePlayLogicStatus(const VexaPlayLogicData& data) override;
    VexaPlayLogicData mediaPlaybackStarted(const VexaRoles& oldRoles, const VexaRoles& newRoles) override;
    void tryResumePlayback() override;
    void playbackStopped() override;
    void playbackEnded() override;
    bool handleAlternate(const CMSetDataRequest& request) override;
    void playTimeChangedInternal(qint64 playTimeMs) override;

    QStringList calls;
    VexaPlayLogicPlayArgs playArgs;
    VexaPlayLogicData dataSeen;
    VexaRoles oldRolesSeen;
    VexaRoles newRolesSeen;
    qint64 playTimeSeen = -1;
    // Whether the request was finished when the operation ran.
    bool replyFinishedSeen = false;
    bool takeAlternate = false;

private:
    void note(const QString& call, const CMSetDataRequest& request);
};
