#pragma once

#include "VexaGlobal.h"

#include <QObject>

// Connections by string signature: a signal's signature prefixed with "2", a
// slot's with "1", as SIGNAL() and SLOT() write them. A failed connection is
// logged by Qt and answered with false.
VEXA_API bool vexaConnect(const QObject* sender, const char* signal, const QObject* receiver, const char* slot,
                          Qt::ConnectionType type = Qt::AutoConnection);
VEXA_API bool vexaDisconnect(const QObject* sender, const char* signal, const QObject* receiver, const char* slot);
