#pragma once

#include "CMPath.h"
#include "VexaHash.h"
#include "VexaMediaData.h"
#include "VexaRolesContainerType.h"
#include "VexaRolesType.h"
#include "VexaValue.h"

#include <QMetaType>

// The roles of one row or node of the browse tree.
class VEXA_API VexaRoles : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString Title() { return QStringLiteral("title"); }
    static QString Path() { return QStringLiteral("path"); }
    static QString Type() { return QStringLiteral("type"); }
    static QString ContainerType() { return QStringLiteral("containerType"); }
    static QString ContainerPlayable() { return QStringLiteral("containerPlayable"); }
    static QString Value() { return QStringLiteral("value"); }
    static QString Context() { return QStringLiteral("context"); }
    static QString MediaData() { return QStringLiteral("mediaData"); }
    static QString Id() { return QStringLiteral("id"); }
    static QString Icon() { return QStringLiteral("icon"); }
    static QString Modifiable() { return QStringLiteral("modifiable"); }
    static QString Description() { return QStringLiteral("description"); }

    QString title() const { return stringValue(Title()); }
    void setTitle(const QString& v) { insert(Title(), v); }
    CMPath path() const { return CMPath(stringValue(Path())); }
    void setPath(const CMPath& v) { insert(Path(), v.toEncoded()); }
    // Type and container type travel by name; an absent one reads as none.
    VexaRolesType::Enum type() const;
    void setType(VexaRolesType::Enum v) { insert(Type(), VexaRolesType::toString(v)); }
    VexaRolesContainerType::Enum containerType() const;
    void setContainerType(VexaRolesContainerType::Enum v) { insert(ContainerType(), VexaRolesContainerType::toString(v)); }
    bool containerPlayable() const { return boolValue(ContainerPlayable()); }
    void setContainerPlayable(bool v) { insert(ContainerPlayable(), v); }
    VexaValue value() const { return VexaValue(hashValue(Value())); }
    void setValue(const VexaValue& v) { insert(Value(), v.toVariant()); }
    VexaRoles context() const { return VexaRoles(hashValue(Context())); }
    void setContext(const VexaRoles& v) { insert(Context(), v.toVariant()); }
    VexaMediaData mediaData() const { return VexaMediaData(hashValue(MediaData())); }
    void setMediaData(const VexaMediaData& v) { insert(MediaData(), v.toVariant()); }
    QString id() const { return stringValue(Id()); }
    void setId(const QString& v) { insert(Id(), v); }
    QString icon() const { return stringValue(Icon()); }
    void setIcon(const QString& v) { insert(Icon(), v); }
    bool modifiable() const { return boolValue(Modifiable()); }
    void setModifiable(bool v) { insert(Modifiable(), v); }
    QString description() const { return stringValue(Description()); }
    void setDescription(const QString& v) { insert(Description(), v); }

    using VexaHash::value;
};

Q_DECLARE_METATYPE(VexaRoles)
