#include "VexaPlayListPlRepeatMode.h"

const VexaEnumTable& VexaPlayListPlRepeatMode::table()
{
    static const VexaEnumTable names({ {Off, "off"}, {One, "one"}, {All, "all"}, {OneAndAll, "oneAndAll"} });
    return names;
}
