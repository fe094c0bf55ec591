#include "VexaVariant.h"

#include <cmath>
#include <limits>

namespace VexaVariant {

bool readInt(const QVariant& value, int* out)
{
    switch (value.type()) {
    case QVariant::Int:
        *out = value.toInt();
        return true;
    case QVariant::UInt:
    case QVariant::LongLong:
    case QVariant::ULongLong:
    case QVariant::Double: {
        const double d = value.toDouble();
        if (std::trunc(d) != d || d < std::numeric_limits<int>::min() || d > std::numeric_limits<int>::max())
            return false;
        *out = int(d);
        return true;
    }
    case QVariant::String: {
        bool ok = false;
        const int v = value.toString().trimmed().toInt(&ok, 10);
        if (ok)
            *out = v;
        return ok;
    }
    default:
        return false;
    }
}

int toInt(const QVariant& value, int fallback)
{
    int v;
    return readInt(value, &v) ? v : fallback;
}

} // namespace VexaVariant
