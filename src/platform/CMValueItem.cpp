#include "CMValueItem.h"

#include "CMRootWorker.h"
#include "VexaConnect.h"

CMValueItem::CMValueItem(QObject* parent, const CMPath& path, QObject* receiver, const char* slot,
                         Qt::ConnectionType type)
    : QObject(parent), m_path(path)
{
    connect(CMRoot(), &CMRootWorker::valueChanged, this, &CMValueItem::on_root_valueChanged);
    vexaConnect(this, SIGNAL(changed(VexaValue, VexaValue)), receiver, slot, type);
}

void CMValueItem::on_root_valueChanged(const CMPath& path, const VexaValue& newValue, const VexaValue& oldValue)
{
    if (path == m_path)
        emit changed(newValue, oldValue);
}
