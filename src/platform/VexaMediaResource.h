#pragma once

#include "VexaHash.h"

// One way to fetch a media: {"uri", "duration" (seconds), "mimeType", ...}.
class VEXA_API VexaMediaResource : public VexaHash
{
public:
    using VexaHash::VexaHash;

    static QString Uri() { return QStringLiteral("uri"); }
    static QString Duration() { return QStringLiteral("duration"); }
    static QString MimeType() { return QStringLiteral("mimeType"); }

    QString uri() const { return stringValue(Uri()); }
    void setUri(const QString& v) { insert(Uri(), v); }
    int duration() const { return intValue(Duration(), 0); }
    void setDuration(int seconds) { insert(Duration(), seconds); }
    QString mimeType() const { return stringValue(MimeType()); }
    void setMimeType(const QString& v) { insert(MimeType(), v); }
};
