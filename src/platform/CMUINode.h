#pragma once

#include "CMNode.h"
#include "TrString.h"
#include "VexaMediaData.h"
#include "VexaRolesType.h"

// A node a user sees: it has a title, a type and, if it plays, media data.
class VEXA_API CMUINode : public CMNode
{
public:
    using CMNode::CMNode;

    TrString title() const { return m_title; }
    void setTitle(const TrString& title) { m_title = title; }
    VexaRolesType::Enum type() const { return m_type; }
    void setType(VexaRolesType::Enum type) { m_type = type; }
    const VexaMediaData& mediaData() const { return m_mediaData; }
    void setMediaData(const VexaMediaData& mediaData) { m_mediaData = mediaData; }

    // Title, path (with params), type and media data, and what subclasses add.
    VexaRoles getDataRoles(const QStringList& roleNames, const CMPath::Params& params) const override;

protected:
    // Adds the roles of this node to roles; subclasses extend it.
    virtual void fillDataRoles(VexaRoles& roles) const;

private:
    TrString m_title;
    VexaRolesType::Enum m_type = VexaRolesType::None;
    VexaMediaData m_mediaData;
};
