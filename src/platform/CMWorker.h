#pragma once

#include "CMAbstractWorker.h"
#include "CMSetDataRequest.h"

#include <QHash>
#include <QString>
#include <QVariant>

#include <functional>

// A module's worker: it owns a path prefix and handles the requests for it on
// the thread it lives on. The host builds each module's worker on a thread of
// its own and passes the module's parameters, among them "prefix".
class VEXA_API CMWorker : public CMAbstractWorker
{
    Q_OBJECT
public:
    CMWorker(const QHash<QString, QVariant>& parameters, const QString& name);

    const QString& name() const { return m_name; }
    const QString& prefix() const { return m_prefix; }
    const QHash<QString, QVariant>& parameters() const { return m_parameters; }

    // Handles a set-data request; may be called on any thread.
    virtual void setDataRequest(const CMSetDataRequest& request);

    // Delivers the request to setDataRequest through this worker's event loop,
    // also when called on its own thread: an invocation never runs inside its
    // caller. A request whose reply was cancelled while it waited is dropped.
    void invoke(const CMPath& path, const QVariant& value, const CMReply<QVariant>& reply) override;
    void setValue(const CMPath& path, const VexaValue& value, const CMReply<QVariant>& reply) override;

protected:
    // Runs fn on this worker's thread: at once when already there, else queued.
    void runOnThread(std::function<void()> fn);

private:
    QHash<QString, QVariant> m_parameters;
    QString m_name;
    QString m_prefix;
};
