#include "VexaEventRowsType.h"

const VexaEnumTable& VexaEventRowsType::table()
{
    static const VexaEnumTable names({ {Close, "close"} });
    return names;
}
