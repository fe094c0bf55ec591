#include "VexaValue.h"

#include "VexaVariant.h"

QStringList VexaValue::kinds()
{
    return {Bool_(), I32(), I64(), Double_(), String_(), PlayerPlayMode(), PowerTarget()};
}

bool VexaValue::isValid() const
{
    const QString kind = type();
    if (!contains(kind))
        return false;
    const QVariant v = value(kind);
    int i;
    if (kind == Bool_())
        return v.type() == QVariant::Bool;
    if (kind == I32())
        return VexaVariant::readInt(v, &i);
    if (kind == I64() || kind == Double_())
        return v.canConvert<double>() && v.type() != QVariant::String && v.type() != QVariant::Bool;
    if (kind == String_())
        return v.type() == QVariant::String;
    if (kind == PlayerPlayMode()) {
        bool ok = false;
        const int mode = VexaPlayerPlayMode::fromVariant(v, &ok);
        return ok && VexaPlayerPlayMode::isValid(mode);
    }
    if (kind == PowerTarget())
        return v.type() == QVariant::Hash && VexaVariant::readInt(v.toHash().value(QStringLiteral("target")), &i);
    return false;
}

VexaPlayerPlayMode::Enum VexaValue::playerPlayMode() const
{
    return VexaPlayerPlayMode::fromVariant(value(PlayerPlayMode()));
}

void VexaValue::setPlayerPlayMode(VexaPlayerPlayMode::Enum mode)
{
    set(PlayerPlayMode(), VexaPlayerPlayMode::toString(mode));
}

void VexaValue::set(const QString& kind, const QVariant& v)
{
    insert(Type(), kind);
    insert(kind, v);
}
