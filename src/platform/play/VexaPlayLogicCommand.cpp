#include "VexaPlayLogicCommand.h"

const VexaEnumTable& VexaPlayLogicCommand::table()
{
    static const VexaEnumTable names({{Play, "play"},
                                      {Stop, "stop"},
                                      {Pause, "pause"},
                                      {Previous, "previous"},
                                      {Next, "next"},
                                      {Like, "like"},
                                      {Dislike, "dislike"},
                                      {SeekTime, "seekTime"},
                                      {SeekBytes, "seekBytes"},
                                      {SetCurrentTrack, "setCurrentTrack"},
                                      {ChangePlayMode, "changePlayMode"}});
    return names;
}
