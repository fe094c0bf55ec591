#pragma once

#include <CMAbstractWorker.h>

#include <QMutex>

// The device's power manager, as far as modules see it: one target state at
// power:/target, 1 at start, set by clients. Every change is announced with
// its new and old value, which is how modules learn of a transition.
class PowerManager : public CMAbstractWorker
{
    Q_OBJECT
public:
    static QString prefix() { return QStringLiteral("power"); }

    QVariant getValue(const CMPath& path) override;
    void setValue(const CMPath& path, const VexaValue& value, const CMReply<QVariant>& reply) override;
    void invoke(const CMPath& path, const QVariant& value, const CMReply<QVariant>& reply) override;

private:
    static VexaValue targetValue(int target);

    QMutex m_mutex;
    int m_target = 1;
};
