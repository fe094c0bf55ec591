#pragma once

#include "VexaEvent.h"
#include "VexaRoles.h"

#include <QList>

// The success answer of a command: {"xclass": "VexaActionReply", "result": roles, "events": [...]}.
class VEXA_API VexaActionReply : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString XClass() { return QStringLiteral("xclass"); }
    static QString Result() { return QStringLiteral("result"); }
    static QString Events() { return QStringLiteral("events"); }

    QString xclass() const { return stringValue(XClass()); }
    void setXclass(const QString& v) { insert(XClass(), v); }
    VexaRoles result() const { return VexaRoles(hashValue(Result())); }
    void setResult(const VexaRoles& v) { insert(Result(), v.toVariant()); }
    QList<VexaEvent> events() const;

    // The success answer carrying value as its result's value.
    static VexaActionReply withValue(const VexaValue& value)
    {
        VexaRoles result;
        result.setValue(value);
        VexaActionReply reply;
        reply.setXclass(QStringLiteral("VexaActionReply"));
        reply.setResult(result);
        return reply;
    }
    void setEvents(const QList<VexaEvent>& events);
};
