#include "PowerManager.h"

#include <CMRootWorker.h>
#include <VexaLog.h>
#include <VexaPaths.h>

QVariant PowerManager::getValue(const CMPath& path)
{
    if (path != VexaPowerManagerTargetPath())
        return QVariant();
    QMutexLocker lock(&m_mutex);
    return targetValue(m_target).toVariant();
}

void PowerManager::invoke(const CMPath& path, const QVariant& value, const CMReply<QVariant>& reply)
{
    setValue(path, VexaValue(value.toHash()), reply);
}

void PowerManager::setValue(const CMPath& path, const VexaValue& value, const CMReply<QVariant>& reply)
{
    if (path != VexaPowerManagerTargetPath()) {
        reply.setError(invalidPathError(path));
        return;
    }
    if (value.type() != VexaValue::PowerTarget() || !value.isValid()) {
        reply.setError(CMError(CMError::BadRequestName(), QStringLiteral("Invalid value"),
                               TrString(QStringLiteral("power:/target takes a powerTarget value"))));
        return;
    }
    const int target = value.powerTarget().target();
    {
        // Announced under the lock so that listeners see changes in order.
        QMutexLocker lock(&m_mutex);
        const int old = m_target;
        m_target = target;
        LOG4CPLUS_INFO(log4cplus::Logger::getInstance("Power"), "Power target " << old << " -> " << target);
        if (old != target)
            emit CMRoot()->valueChanged(path, targetValue(target), targetValue(old));
    }
    reply.setData(QVariant());
}

VexaValue PowerManager::targetValue(int target)
{
    VexaPowerManagerTarget powerTarget;
    powerTarget.setTarget(target);
    VexaValue value;
    value.setPowerTarget(powerTarget);
    return value;
}
