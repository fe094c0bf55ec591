#pragma once

#include "VexaHash.h"

// An error the player reports about a media: {"code": N, "message": "..."}.
class VEXA_API VexaError : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString Code() { return QStringLiteral("code"); }
    static QString Message() { return QStringLiteral("message"); }

    int code() const { return intValue(Code(), 0); }
    void setCode(int v) { insert(Code(), v); }
    QString message() const { return stringValue(Message()); }
    void setMessage(const QString& v) { insert(Message(), v); }
};
