#include <VexaModule.h>

// A module whose start fails: the host must name it and go on.
VEXA_MODULE_EXPORT CMAbstractWorker* worker_create(void*, const QHash<QString, QVariant>&)
{
    return nullptr;
}
