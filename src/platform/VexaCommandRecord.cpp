#include "VexaCommandRecord.h"

#include "VexaVariant.h"

namespace {

void setOk(bool* ok, bool value)
{
    if (ok)
        *ok = value;
}

} // namespace

QList<int> VexaCommandRecord::intItems(bool* ok) const
{
    QList<int> items;
    const QVariantList list = value(Items()).toList();
    items.reserve(list.size());
    for (const QVariant& v : list) {
        int i;
        if (!VexaVariant::readInt(v, &i)) {
            setOk(ok, false);
            return {};
        }
        items.append(i);
    }
    setOk(ok, value(Items()).type() == QVariant::List);
    return items;
}

void VexaCommandRecord::setIntItems(const QList<int>& items)
{
    QVariantList list;
    list.reserve(items.size());
    for (int i : items)
        list.append(i);
    insert(Items(), list);
}

QList<CMPath> VexaCommandRecord::pathItems(bool* ok) const
{
    QList<CMPath> items;
    const QVariantList list = value(Items()).toList();
    items.reserve(list.size());
    for (const QVariant& v : list) {
        if (v.type() != QVariant::String) {
            setOk(ok, false);
            return {};
        }
        items.append(CMPath(v.toString()));
    }
    setOk(ok, value(Items()).type() == QVariant::List);
    return items;
}

void VexaCommandRecord::setPathItems(const QList<CMPath>& items)
{
    QVariantList list;
    for (const CMPath& p : items)
        list.append(p.toEncoded());
    insert(Items(), list);
}

QList<VexaPlayListItem> VexaCommandRecord::playListItems(bool* ok) const
{
    QList<VexaPlayListItem> items;
    const QVariantList list = value(Items()).toList();
    for (const QVariant& v : list) {
        if (v.type() != QVariant::Hash) {
            setOk(ok, false);
            return {};
        }
        items.append(VexaPlayListItem::fromHash(v.toHash()));
    }
    setOk(ok, value(Items()).type() == QVariant::List);
    return items;
}

void VexaCommandRecord::setPlayListItems(const QList<VexaPlayListItem>& items)
{
    QVariantList list;
    for (const VexaPlayListItem& item : items)
        list.append(item.toHash());
    insert(Items(), list);
}
