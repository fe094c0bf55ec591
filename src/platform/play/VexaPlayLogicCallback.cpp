#include "VexaPlayLogicCallback.h"

const VexaEnumTable& VexaPlayLogicCallback::table()
{
    static const VexaEnumTable names({{MediaPlaybackStarted, "mediaPlaybackStarted"},
                                      {PrepareNextMedia, "prepareNextMedia"},
                                      {TryResumePlayback, "tryResumePlayback"},
                                      {PlaybackStopped, "playbackStopped"},
                                      {PlaybackEnded, "playbackEnded"},
                                      {PlayTimeChanged, "playTimeChanged"}});
    return names;
}
