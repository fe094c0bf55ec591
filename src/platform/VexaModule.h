#pragma once

#include "CMAbstractWorker.h"

#include <QHash>
#include <QString>
#include <QVariant>

// The one entry of a loadable module. The host calls it on the thread the
// module's worker will live on; the first argument is reserved and ignored,
// the second holds the module's parameters, among them "prefix". A null
// result means the module could not start.
using VexaWorkerCreateFunction = CMAbstractWorker* (*)(void* reserved, const QHash<QString, QVariant>& parameters);

#define VEXA_MODULE_EXPORT extern "C" __attribute__((visibility("default")))
