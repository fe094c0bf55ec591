#pragma once

#include "CMNode.h"
#include "PlayLogicBase.h"
#include "PlayLogicInterface.h"
#include "VexaPlayLogicPlayArgs.h"
#include "VexaPlayLogicPlayModesSupported.h"
#include "VexaPlayLogicRequest.h"

#include <QObject>

// The base of every play logic: a node at the play logic's path through
// which the player drives it. The player's requests arrive as set-data
// requests on the module's worker thread; their value is a VexaPlayLogicRequest:
// - {"command": "play" | "stop" | "pause" | "previous" | "next" | "like" |
//   "dislike" | "seekTime" | "seekBytes" | "setCurrentTrack" | "changePlayMode",
//   <arguments>}: the public command operation decodes it and calls the
//   virtual *Internal one, which answers the request's reply. A play command
//   carries the keys of VexaPlayLogicPlayArgs, a change of play mode those of
//   VexaPlayLogicChangePlayModeArgs.
// - {"callback": "mediaPlaybackStarted" | "prepareNextMedia" |
//   "tryResumePlayback" | "playbackStopped" | "playbackEnded" |
//   "playTimeChanged", <arguments>}: the matching virtual runs and the reply
//   completes once it has returned, so the player knows the play logic has
//   answered (for instance announced its next media).
// Anything else goes to handleAlternate; when that declines, the node refuses.
// The play logic reaches the player through PlayLogicInterface::playerInstance();
// those calls return at once.
class VEXA_API StreamerPlayLogic : public QObject, public CMNode, public PlayLogicBase, public PlayLogicInterface
{
    Q_OBJECT

public:
    StreamerPlayLogic(CMNodes* nodes, const CMPath& path);
    ~StreamerPlayLogic() override;

    // Commands: decode the request and call the matching *Internal operation.
    virtual void play(const CMSetDataRequest& request);
    virtual void stop(const CMSetDataRequest& request);
    virtual void pause(const CMSetDataRequest& request);
    virtual void previous(const CMSetDataRequest& request);
    virtual void next(const CMSetDataRequest& request);
    virtual void like(const CMSetDataRequest& request);
    virtual void dislike(const CMSetDataRequest& request);
    virtual void seekTime(const CMSetDataRequest& request);
    virtual void seekBytes(const CMSetDataRequest& request);
    virtual void setCurrentTrack(const CMSetDataRequest& request);
    virtual void changePlayMode(const CMSetDataRequest& request);

    // The play modes the player may offer; none by default.
    virtual VexaPlayLogicPlayModesSupported playModesSupported();
    // The *Internal operations answer the request's reply. Playing, stepping,
    // seeking, liking and choosing a track are refused unless a play logic
    // implements them.
    virtual void playInternal(const CMSetDataRequest& request, const VexaPlayLogicPlayArgs& args);
    // Stops the player and completes the request.
    virtual void stopInternal(const CMSetDataRequest& request);
    // Completes the request: the player pauses by itself.
    virtual void pauseInternal(const CMSetDataRequest& request);
    virtual void previousInternal(const CMSetDataRequest& request);
    virtual void nextInternal(const CMSetDataRequest& request);
    virtual void seekTimeInternal(const CMSetDataRequest& request);
    virtual void seekBytesInternal(const CMSetDataRequest& request);
    virtual void likeInternal(const CMSetDataRequest& request);
    virtual void dislikeInternal(const CMSetDataRequest& request);
    virtual void setCurrentTrackInternal(const CMSetDataRequest& request);
    // Publishes the requested play mode (VexaPlayLogicChangePlayModeArgs) and completes the request.
    virtual void changePlayModeInternal(const CMSetDataRequest& request);
    // The player asks for the media that follows the current one; by default there is none.
    virtual void prepareNextMedia();
    // How a track and the data appear to the player; unchanged by default.
    virtual VexaRoles translateTrackRoles(const VexaRoles& roles);
    virtual VexaPlayLogicData translatePlayLogicStatus(const VexaPlayLogicData& data);
    // A media started; the data returned is published. When it is called,
    // data() already holds the new track roles; the default returns data()
    // without the errors of an earlier media.
    virtual VexaPlayLogicData mediaPlaybackStarted(const VexaRoles& oldRoles, const VexaRoles& newRoles);
    // A media failed to start (the error is in data().streamerError()); go on
    // if possible. By default playback ends.
    virtual void tryResumePlayback();
    // The player stopped this play logic's playback for a reason of its own.
    virtual void playbackStopped();
    // Nothing more to play: the player stops.
    virtual void playbackEnded();
    // Requests this base does not know; true when taken.
    virtual bool handleAlternate(const CMSetDataRequest& request);
    virtual void playTimeChangedInternal(qint64 playTimeMs);

    // Dispatches the player's requests (see the class comment).
    bool setDataRequest(const CMSetDataRequest& request) override;

protected:
    // Asks the player to play roles now, announces the media that follows the
    // current one, or tells it that none follows. They return at once.
    bool sendPlayCommand(const VexaRoles& roles, const QHash<QString, QVariant>& options);
    bool sendSetNextMediaCommand(const VexaRoles& roles, const QHash<QString, QVariant>& options);
    bool sendNoNextMediaCommand();

    // Answers request with the error that this play logic does not do what it asks.
    void refuseUnsupported(const CMSetDataRequest& request, const QString& what);

private:
    bool dispatchCommand(const CMSetDataRequest& request, const VexaPlayLogicRequest& value);
    bool dispatchCallback(const CMSetDataRequest& request, const VexaPlayLogicRequest& value);
};
