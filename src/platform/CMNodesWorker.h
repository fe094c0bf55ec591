#pragma once

#include "CMNodes.h"
#include "CMSubscribe.h"
#include "CMWorker.h"

// A worker whose paths are nodes in its registry. Every request is handled on
// the worker's thread by the node registered at the request's path.
class VEXA_API CMNodesWorker : public CMWorker
{
    Q_OBJECT
public:
    CMNodesWorker(const QHash<QString, QVariant>& parameters, const QString& name);

    CMNodes* nodes() { return &m_nodes; }
    CMSubscribe* subscribe() { return &m_subscribe; }

    // Hands the request to the node at its path; unknown paths and requests
    // the node refuses are answered with an error.
    void setDataRequest(const CMSetDataRequest& request) override;
    void getRows(const CMGetRowsRequest& request) override;
    void getData(const CMPath& path, const QStringList& roleNames, const CMReply<QVariant>& reply) override;

private:
    CMNodes m_nodes;
    CMSubscribe m_subscribe;
};
