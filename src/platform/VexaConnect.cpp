#include "VexaConnect.h"

bool vexaConnect(const QObject* sender, const char* signal, const QObject* receiver, const char* slot,
                 Qt::ConnectionType type)
{
    return bool(QObject::connect(sender, signal, receiver, slot, type));
}

bool vexaDisconnect(const QObject* sender, const char* signal, const QObject* receiver, const char* slot)
{
    return QObject::disconnect(sender, signal, receiver, slot);
}
