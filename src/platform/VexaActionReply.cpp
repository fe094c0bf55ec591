#include "VexaActionReply.h"

QList<VexaEvent> VexaActionReply::events() const
{
    QList<VexaEvent> list;
    for (const QVariant& v : value(Events()).toList())
        list.append(VexaEvent(v.toHash()));
    return list;
}

void VexaActionReply::setEvents(const QList<VexaEvent>& events)
{
    QVariantList list;
    for (const VexaEvent& e : events)
        list.append(e.toVariant());
    insert(Events(), list);
}
