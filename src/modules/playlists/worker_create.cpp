#include "PlayListWorker.h"

#include "VexaModule.h"

VEXA_MODULE_EXPORT CMAbstractWorker* worker_create(void*, const QHash<QString, QVariant>& parameters)
{
    return new PlayListWorker(parameters);
}
