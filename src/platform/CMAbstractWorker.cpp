#include "CMAbstractWorker.h"

QVariant CMAbstractWorker::getValue(const CMPath&)
{
    return QVariant();
}

void CMAbstractWorker::setValue(const CMPath& path, const VexaValue&, const CMReply<QVariant>& reply)
{
    reply.setError(invalidPathError(path));
}

void CMAbstractWorker::invoke(const CMPath& path, const QVariant&, const CMReply<QVariant>& reply)
{
    reply.setError(invalidPathError(path));
}

void CMAbstractWorker::getRows(const CMGetRowsRequest& request)
{
    request.reply().setError(invalidPathError(request.path()));
}

void CMAbstractWorker::getData(const CMPath& path, const QStringList&, const CMReply<QVariant>& reply)
{
    reply.setError(invalidPathError(path));
}

CMError CMAbstractWorker::invalidPathError(const CMPath& path)
{
    return CMError(CMError::InvalidPathName(), QStringLiteral("Invalid path"),
                   TrString(QStringLiteral("Nothing answers at ") + path.toEncoded()));
}
