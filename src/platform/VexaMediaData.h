#pragma once

#include "VexaMediaResource.h"
#include "VexaMetaData.h"

#include <QList>

// What a track is and where it is fetched from: {"metaData": {...}, "resources": [...]}.
class VEXA_API VexaMediaData : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString MetaData() { return QStringLiteral("metaData"); }
    static QString Resources() { return QStringLiteral("resources"); }

    VexaMetaData metaData() const { return VexaMetaData(hashValue(MetaData())); }
    void setMetaData(const VexaMetaData& v) { insert(MetaData(), v.toVariant()); }
    QList<VexaMediaResource> resources() const;
    void setResources(const QList<VexaMediaResource>& resources);
};
