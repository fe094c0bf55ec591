#include "CMRootWorker.h"

CMRootWorker* CMRootWorker::instance()
{
    static CMRootWorker* root = new CMRootWorker;
    return root;
}

CMRootWorker* CMRoot()
{
    return CMRootWorker::instance();
}

void CMRootWorker::registerWorker(const QString& prefix, CMAbstractWorker* worker)
{
    QWriteLocker lock(&m_lock);
    m_workers.insert(prefix, worker);
}

void CMRootWorker::unregisterWorker(const QString& prefix)
{
    QWriteLocker lock(&m_lock);
    m_workers.remove(prefix);
}

CMAbstractWorker* CMRootWorker::worker(const QString& prefix) const
{
    QReadLocker lock(&m_lock);
    return m_workers.value(prefix);
}

QStringList CMRootWorker::prefixes() const
{
    QReadLocker lock(&m_lock);
    return m_workers.keys();
}

QVariant CMRootWorker::getValue(const CMPath& path)
{
    CMAbstractWorker* owner = worker(path.prefix());
    return owner ? owner->getValue(path) : QVariant();
}

void CMRootWorker::setValue(const CMPath& path, const VexaValue& value, const CMReply<QVariant>& reply)
{
    if (CMAbstractWorker* owner = worker(path.prefix()))
        owner->setValue(path, value, reply);
    else
        reply.setError(invalidPathError(path));
}

void CMRootWorker::invoke(const CMPath& path, const QVariant& value, const CMReply<QVariant>& reply)
{
    if (CMAbstractWorker* owner = worker(path.prefix()))
        owner->invoke(path, value, reply);
    else
        reply.setError(invalidPathError(path));
}

void CMRootWorker::getRows(const CMGetRowsRequest& request)
{
    if (CMAbstractWorker* owner = worker(request.path().prefix()))
        owner->getRows(request);
    else
        request.reply().setError(invalidPathError(request.path()));
}

void CMRootWorker::getData(const CMPath& path, const QStringList& roleNames, const CMReply<QVariant>& reply)
{
    if (CMAbstractWorker* owner = worker(path.prefix()))
        owner->getData(path, roleNames, reply);
    else
        reply.setError(invalidPathError(path));
}
