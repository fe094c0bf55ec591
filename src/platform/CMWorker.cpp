#include "CMWorker.h"

#include <QMetaObject>
#include <QThread>

CMWorker::CMWorker(const QHash<QString, QVariant>& parameters, const QString& name)
    : m_parameters(parameters), m_name(name), m_prefix(parameters.value(QStringLiteral("prefix")).toString())
{
    setObjectName(name);
}

void CMWorker::setDataRequest(const CMSetDataRequest& request)
{
    request.reply().setError(invalidPathError(request.path()));
}

void CMWorker::invoke(const CMPath& path, const QVariant& value, const CMReply<QVariant>& reply)
{
    const CMSetDataRequest request(path, value, reply);
    // Whoever waits for the reply may give up while the request is still
    // queued behind others; then it is dropped instead of carried out late.
    reply.setQueued();
    QMetaObject::invokeMethod(
        this,
        [this, request]() {
            if (request.reply().start())
                setDataRequest(request);
        },
        Qt::QueuedConnection);
}

void CMWorker::setValue(const CMPath& path, const VexaValue& value, const CMReply<QVariant>& reply)
{
    invoke(path, value.toVariant(), reply);
}

void CMWorker::runOnThread(std::function<void()> fn)
{
    if (QThread::currentThread() == thread())
        fn();
    else
        QMetaObject::invokeMethod(this, std::move(fn), Qt::QueuedConnection);
}
