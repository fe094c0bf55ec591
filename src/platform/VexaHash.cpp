#include "VexaHash.h"

#include "VexaVariant.h"

#include <QDebug>

int VexaHash::intValue(const QString& key, int fallback) const
{
    return VexaVariant::toInt(m_hash.value(key), fallback);
}

bool VexaHash::boolValue(const QString& key) const
{
    const QVariant v = m_hash.value(key);
    if (v.type() == QVariant::String)
        return v.toString() == QLatin1String("true") || v.toString() == QLatin1String("1");
    return v.toBool();
}

QDebug operator<<(QDebug debug, const VexaHash& hash)
{
    return debug << hash.hash();
}
