#include "VexaRoles.h"

VexaRolesType::Enum VexaRoles::type() const
{
    bool ok = false;
    const auto t = VexaRolesType::fromVariant(VexaHash::value(Type()), &ok);
    return ok ? t : VexaRolesType::None;
}

VexaRolesContainerType::Enum VexaRoles::containerType() const
{
    bool ok = false;
    const auto t = VexaRolesContainerType::fromVariant(VexaHash::value(ContainerType()), &ok);
    return ok ? t : VexaRolesContainerType::None;
}
