#pragma once

#include "TrString.h"
#include "VexaHash.h"

#include <QMetaType>

// A failure answered instead of a value: a machine-readable name, a title and
// the message for the user.
class VEXA_API CMError : public VexaHash
{
public:
    using VexaHash::VexaHash;
    CMError(const QString& name, const QString& title, const TrString& message);

    static QString Name() { return QStringLiteral("name"); }
    static QString Title() { return QStringLiteral("title"); }
    static QString Message() { return QStringLiteral("message"); }

    static QString DefaultName() { return QStringLiteral("error"); }
    static QString DefaultTitle() { return QStringLiteral("Error"); }
    // The name of the error for a path that no module or node answers.
    static QString InvalidPathName() { return QStringLiteral("invalidPath"); }
    // The name of the error for a request whose value cannot be read.
    static QString BadRequestName() { return QStringLiteral("badRequest"); }
    static QString TimeoutName() { return QStringLiteral("timeout"); }

    QString name() const { return stringValue(Name()); }
    void setName(const QString& v) { insert(Name(), v); }
    QString title() const { return stringValue(Title()); }
    void setTitle(const QString& v) { insert(Title(), v); }
    QString message() const { return stringValue(Message()); }
    void setMessage(const TrString& v) { insert(Message(), v.text()); }
};

Q_DECLARE_METATYPE(CMError)
