#include "ApiRequest.h"

bool ApiRequest::hasArgument(const QString& name) const
{
    for (const Argument& a : m_query) {
        if (a.first == name)
            return true;
    }
    return false;
}

QString ApiRequest::argument(const QString& name, const QString& fallback) const
{
    for (const Argument& a : m_query) {
        if (a.first == name)
            return a.second;
    }
    return fallback;
}

QByteArray ApiRequest::header(const QByteArray& name) const
{
    QByteArray value;
    for (const Header& h : m_headers) {
        if (h.first.compare(name, Qt::CaseInsensitive) == 0)
            value += (value.isEmpty() ? QByteArray() : QByteArrayLiteral(", ")) + h.second;
    }
    return value;
}
