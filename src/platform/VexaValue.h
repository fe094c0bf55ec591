#pragma once

#include "VexaHash.h"
#include "VexaPlayerPlayMode.h"
#include "VexaPowerManagerTarget.h"

#include <QMetaType>

// A tagged value: "type" names the accessor that holds it, as in
// {"type": "i32_", "i32_": 3}.
class VEXA_API VexaValue : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString Type() { return QStringLiteral("type"); }
    static QString Bool_() { return QStringLiteral("bool_"); }
    static QString I32() { return QStringLiteral("i32_"); }
    static QString I64() { return QStringLiteral("i64_"); }
    static QString Double_() { return QStringLiteral("double_"); }
    static QString String_() { return QStringLiteral("string_"); }
    static QString PlayerPlayMode() { return QStringLiteral("playerPlayMode"); }
    static QString PowerTarget() { return QStringLiteral("powerTarget"); }

    // The scalar or typed kinds a value may have, for validating input.
    static QStringList kinds();

    QString type() const { return stringValue(Type()); }
    // True when "type" names a known kind and the value under it has that kind.
    bool isValid() const;

    bool bool_() const { return boolValue(Bool_()); }
    void setBool_(bool v) { set(Bool_(), v); }
    int i32_() const { return intValue(I32(), 0); }
    void setI32_(int v) { set(I32(), v); }
    int i32() const { return i32_(); }
    void setI32(int v) { setI32_(v); }
    qint64 i64_() const { return value(I64()).toLongLong(); }
    void setI64_(qint64 v) { set(I64(), v); }
    double double_() const { return value(Double_()).toDouble(); }
    void setDouble_(double v) { set(Double_(), v); }
    QString string_() const { return stringValue(String_()); }
    void setString_(const QString& v) { set(String_(), v); }

    VexaPlayerPlayMode::Enum playerPlayMode() const;
    void setPlayerPlayMode(VexaPlayerPlayMode::Enum mode);
    VexaPowerManagerTarget powerTarget() const { return VexaPowerManagerTarget(hashValue(PowerTarget())); }
    void setPowerTarget(const VexaPowerManagerTarget& target) { set(PowerTarget(), target.toVariant()); }

private:
    void set(const QString& kind, const QVariant& v);
};

Q_DECLARE_METATYPE(VexaValue)
