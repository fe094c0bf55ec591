#include "VexaPlayLogicStopReason.h"

const VexaEnumTable& VexaPlayLogicStopReason::table()
{
    static const VexaEnumTable names({{Stopped, "stopped"}, {Error, "error"}, {EndOfContent, "endOfContent"}});
    return names;
}
