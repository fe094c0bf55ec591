#include "CMPath.h"

#include <QDebug>
#include <QUrl>

namespace {

QString encode(const QString& text)
{
    // Numbers and plain names, the usual parameters, encode as themselves.
    for (const QChar c : text) {
        const ushort u = c.unicode();
        const bool unreserved = (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || (u >= '0' && u <= '9') || u == '-' || u == '.'
            || u == '_' || u == '~';
        if (!unreserved)
            return QString::fromLatin1(QUrl::toPercentEncoding(text));
    }
    return text;
}

QString decode(const QString& text)
{
    return QUrl::fromPercentEncoding(text.toUtf8());
}

} // namespace

CMPath::CMPath(const QString& text)
{
    const int colon = text.indexOf(QLatin1Char(':'));
    const int question = text.indexOf(QLatin1Char('?'));
    // A ':' after the start of the parameters belongs to a parameter.
    const bool hasPrefix = colon >= 0 && (question < 0 || colon < question);
    const int pathStart = hasPrefix ? colon + 1 : 0;
    if (hasPrefix)
        m_prefix = text.left(colon);
    if (question < 0) {
        m_path = text.mid(pathStart);
        return;
    }
    m_path = text.mid(pathStart, question - pathStart);
    const QStringList pairs = text.mid(question + 1).split(QLatin1Char('&'), Qt::SkipEmptyParts);
    for (const QString& pair : pairs) {
        const int eq = pair.indexOf(QLatin1Char('='));
        if (eq < 0)
            addParam(decode(pair), QString());
        else
            addParam(decode(pair.left(eq)), decode(pair.mid(eq + 1)));
    }
}

CMPath CMPath::fromPrefix(const QString& prefix)
{
    CMPath p;
    p.m_prefix = prefix;
    return p;
}

QStringList CMPath::splitBase() const
{
    return m_path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
}

QString CMPath::lastSegment() const
{
    const QStringList parts = splitBase();
    return parts.isEmpty() ? QString() : parts.last();
}

CMPath CMPath::appended(const QString& segment) const
{
    CMPath p(*this);
    return p.append(segment);
}

CMPath& CMPath::append(const QString& segment)
{
    m_path += QLatin1Char('/') + segment;
    return *this;
}

bool CMPath::hasParam(const QString& name) const
{
    for (const Param& p : m_params) {
        if (p.first == name)
            return true;
    }
    return false;
}

QString CMPath::param(const QString& name) const
{
    for (const Param& p : m_params) {
        if (p.first == name)
            return p.second;
    }
    return QString();
}

CMPath& CMPath::addParam(const QString& name, const QString& value)
{
    for (Param& p : m_params) {
        if (p.first == name) {
            p.second = value;
            return *this;
        }
    }
    m_params.append(Param(name, value));
    return *this;
}

CMPath CMPath::withParam(const QString& name, const QString& value) const
{
    CMPath p(*this);
    return p.addParam(name, value);
}

QString CMPath::base() const
{
    return m_prefix + QLatin1Char(':') + m_path;
}

bool CMPath::startsWith(const CMPath& other) const
{
    if (m_prefix != other.m_prefix || !m_path.startsWith(other.m_path))
        return false;
    return m_path.size() == other.m_path.size() || other.m_path.endsWith(QLatin1Char('/'))
        || m_path.at(other.m_path.size()) == QLatin1Char('/');
}

QString CMPath::toEncoded() const
{
    QString text = base();
    for (int i = 0; i < m_params.size(); ++i) {
        text += QLatin1Char(i == 0 ? '?' : '&');
        text += encode(m_params.at(i).first) + QLatin1Char('=') + encode(m_params.at(i).second);
    }
    return text;
}

bool CMPath::operator==(const CMPath& other) const
{
    return m_prefix == other.m_prefix && m_path == other.m_path && m_params == other.m_params;
}

QDebug operator<<(QDebug debug, const CMPath& path)
{
    QDebugStateSaver saver(debug);
    debug.noquote() << path.toEncoded();
    return debug;
}
