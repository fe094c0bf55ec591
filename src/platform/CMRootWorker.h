#pragma once

#include "CMAbstractWorker.h"

#include <QHash>
#include <QList>
#include <QReadWriteLock>

// The root of the content model: it routes every call to the worker that owns
// the path's prefix, and carries the change notifications of all workers to
// whoever listens (the HTTP API's subscriptions, value watchers).
class VEXA_API CMRootWorker : public CMAbstractWorker
{
    Q_OBJECT
public:
    static CMRootWorker* instance();

    void registerWorker(const QString& prefix, CMAbstractWorker* worker);
    void unregisterWorker(const QString& prefix);
    CMAbstractWorker* worker(const QString& prefix) const;
    QStringList prefixes() const;

    QVariant getValue(const CMPath& path) override;
    void setValue(const CMPath& path, const VexaValue& value, const CMReply<QVariant>& reply) override;
    void invoke(const CMPath& path, const QVariant& value, const CMReply<QVariant>& reply) override;
    void getRows(const CMGetRowsRequest& request) override;
    void getData(const CMPath& path, const QStringList& roleNames, const CMReply<QVariant>& reply) override;

signals:
    // A value changed; emitted on the thread that changed it.
    void valueChanged(const CMPath& path, const VexaValue& newValue, const VexaValue& oldValue);
    // Rows of a list changed: "reset" for the path and every path below it,
    // or inserted rows (their indexes in rows).
    void rowsReset(const CMPath& path);
    void rowsInserted(const CMPath& path, const QList<int>& rows);

private:
    CMRootWorker() = default;

    mutable QReadWriteLock m_lock;
    QHash<QString, CMAbstractWorker*> m_workers;
};

// The root through which modules reach values and other modules.
VEXA_API CMRootWorker* CMRoot();
