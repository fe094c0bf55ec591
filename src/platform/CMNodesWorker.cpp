#include "CMNodesWorker.h"

#include "CMNode.h"

CMNodesWorker::CMNodesWorker(const QHash<QString, QVariant>& parameters, const QString& name)
    : CMWorker(parameters, name)
{
}

void CMNodesWorker::setDataRequest(const CMSetDataRequest& request)
{
    runOnThread([this, request]() {
        CMNode* node = m_nodes.find(request.path());
        if (!node || !node->setDataRequest(request))
            request.reply().setError(invalidPathError(request.path()));
    });
}

void CMNodesWorker::getRows(const CMGetRowsRequest& request)
{
    runOnThread([this, request]() {
        CMNode* node = m_nodes.find(request.path());
        if (!node || !node->getRowsRequest(request))
            request.reply().setError(invalidPathError(request.path()));
    });
}

void CMNodesWorker::getData(const CMPath& path, const QStringList& roleNames, const CMReply<QVariant>& reply)
{
    runOnThread([this, path, roleNames, reply]() {
        CMNode* node = m_nodes.find(path);
        if (node)
            reply.setData(node->getDataRoles(roleNames, path.params()).toVariant());
        else
            reply.setError(invalidPathError(path));
    });
}
