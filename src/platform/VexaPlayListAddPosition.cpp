#include "VexaPlayListAddPosition.h"

const VexaEnumTable& VexaPlayListAddPosition::table()
{
    static const VexaEnumTable names({ {Now, "now"}, {Next, "next"}, {Append, "append"} });
    return names;
}
