#pragma once

#include "CMGetRowsRequest.h"
#include "CMPath.h"
#include "CMReply.h"
#include "VexaValue.h"

#include <QObject>
#include <QStringList>
#include <QVariant>

// What every owner of a path prefix answers: values, set-data invocations,
// rows and node roles. The defaults answer that the path is unknown.
class VEXA_API CMAbstractWorker : public QObject
{
    Q_OBJECT
public:
    explicit CMAbstractWorker(QObject* parent = nullptr) : QObject(parent) {}

    // The value at a value path as a VexaValue hash; invalid when there is none.
    // Synchronous: implementations must be thread-safe.
    virtual QVariant getValue(const CMPath& path);
    // Sets a value; the reply completes when it is set or refused.
    virtual void setValue(const CMPath& path, const VexaValue& value, const CMReply<QVariant>& reply);
    // Delivers a set-data request with value to path; never blocks the caller.
    virtual void invoke(const CMPath& path, const QVariant& value, const CMReply<QVariant>& reply);
    // Answers a rows request through its reply.
    virtual void getRows(const CMGetRowsRequest& request);
    // Answers the roles of the node at path through reply.
    virtual void getData(const CMPath& path, const QStringList& roleNames, const CMReply<QVariant>& reply);

    static CMError invalidPathError(const CMPath& path);
};
