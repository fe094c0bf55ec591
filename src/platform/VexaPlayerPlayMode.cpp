#include "VexaPlayerPlayMode.h"

const VexaEnumTable& VexaPlayerPlayMode::table()
{
    static const VexaEnumTable names({ {Normal, "normal"}, {Shuffle, "shuffle"}, {RepeatOne, "repeatOne"}, {ShuffleRepeatOne, "shuffleRepeatOne"}, {RepeatAll, "repeatAll"}, {ShuffleRepeatAll, "shuffleRepeatAll"} });
    return names;
}
