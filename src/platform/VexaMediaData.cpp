#include "VexaMediaData.h"

QList<VexaMediaResource> VexaMediaData::resources() const
{
    QList<VexaMediaResource> list;
    for (const QVariant& v : value(Resources()).toList())
        list.append(VexaMediaResource(v.toHash()));
    return list;
}

void VexaMediaData::setResources(const QList<VexaMediaResource>& resources)
{
    QVariantList list;
    for (const VexaMediaResource& r : resources)
        list.append(r.toVariant());
    insert(Resources(), list);
}
