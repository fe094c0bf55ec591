#pragma once

#include "CMUINode.h"
#include "VexaRolesContainerType.h"

// A node that holds other entries: a list, or a context menu.
class VEXA_API CMContainerNode : public CMUINode
{
public:
    explicit CMContainerNode(const CMPath& path);

    VexaRolesContainerType::Enum containerType() const { return m_containerType; }
    void setContainerType(VexaRolesContainerType::Enum type) { m_containerType = type; }
    // The raw number is accepted too, for container types the SDK does not name.
    void setContainerType(int type) { m_containerType = VexaRolesContainerType::Enum(type); }

protected:
    void fillDataRoles(VexaRoles& roles) const override;

private:
    VexaRolesContainerType::Enum m_containerType = VexaRolesContainerType::None;
};
