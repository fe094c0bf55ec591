#include "LibraryWorker.h"

#include "VexaModule.h"

VEXA_MODULE_EXPORT CMAbstractWorker* worker_create(void*, const QHash<QString, QVariant>& parameters)
{
    auto* worker = new LibraryWorker(parameters);
    if (worker->isReady())
        return worker;
    delete worker;
    return nullptr;
}
