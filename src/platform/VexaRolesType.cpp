#include "VexaRolesType.h"

const VexaEnumTable& VexaRolesType::table()
{
    static const VexaEnumTable names({ {None, "none"}, {Container, "container"}, {Audio, "audio"}, {Input, "input"}, {Action, "action"}, {Header, "header"}, {Separator, "separator"} });
    return names;
}
