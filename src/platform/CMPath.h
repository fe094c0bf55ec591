#pragma once

#include "VexaGlobal.h"

#include <QList>
#include <QMetaType>
#include <QPair>
#include <QString>
#include <QStringList>

// A place in the content-model tree: "prefix:/path/segments?key=value&...".
// The prefix names the owning module. Parameters are named, keep the order in
// which they were first added, and are percent-encoded in the text form, so a
// whole path can travel as the value of another path's parameter.
class VEXA_API CMPath
{
public:
    using Param = QPair<QString, QString>;
    using Params = QList<Param>;

    CMPath() = default;
    // Parses the text form; the inverse of toEncoded().
    CMPath(const QString& text);
    CMPath(const char* text) : CMPath(QString::fromUtf8(text)) {}

    static CMPath fromPrefix(const QString& prefix);

    bool isEmpty() const { return m_prefix.isEmpty() && m_path.isEmpty() && m_params.isEmpty(); }
    QString prefix() const { return m_prefix; }
    QString path() const { return m_path; }
    void setPath(const QString& path) { m_path = path; }

    // The path split at '/' without empty parts: "/tracks/12" gives "tracks", "12".
    QStringList splitBase() const;
    // The last of those parts; empty when there is none.
    QString lastSegment() const;

    // This path with "/" + segment appended to its path part.
    CMPath appended(const QString& segment) const;
    CMPath& append(const QString& segment);

    const Params& params() const { return m_params; }
    void setParams(const Params& params) { m_params = params; }
    bool hasParam(const QString& name) const;
    QString param(const QString& name) const;
    // Adds a parameter, or replaces the value in place when the name exists.
    CMPath& addParam(const QString& name, const QString& value);
    CMPath withParam(const QString& name, const QString& value) const;

    // prefix:path without parameters: what the node registry matches.
    QString base() const;
    // True when this path's base equals other's base or continues it after a '/'.
    bool startsWith(const CMPath& other) const;

    QString toEncoded() const;
    QString toString() const { return toEncoded(); }

    bool operator==(const CMPath& other) const;
    bool operator!=(const CMPath& other) const { return !(*this == other); }

private:
    QString m_prefix;
    QString m_path;
    Params m_params;
};

VEXA_API QDebug operator<<(QDebug debug, const CMPath& path);

Q_DECLARE_METATYPE(CMPath)
