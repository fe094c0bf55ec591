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

QString ApiRequest::header(const QString& name) const
{
    for (const Argument& h : m_headers) {
        if (h.first.compare(name, Qt::CaseInsensitive) == 0)
            return h.second;
    }
    return QString();
}
