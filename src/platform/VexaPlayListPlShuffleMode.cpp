#include "VexaPlayListPlShuffleMode.h"

const VexaEnumTable& VexaPlayListPlShuffleMode::table()
{
    static const VexaEnumTable names({ {Off, "off"}, {On, "on"} });
    return names;
}
