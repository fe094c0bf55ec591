#pragma once

#include "ApiResult.h"

#include <QString>

// The web app: the files of web/, compiled into the host, served at / (the
// page) and /<name>. A request names a resource, never a file: only the
// names compiled in answer, everything else is 404. The files change only
// with the host, so clients revalidate by ETag and get 304 while it holds.
class WebAppApi
{
public:
    static QString IndexName() { return QStringLiteral("index.html"); }

    // ifNoneMatch: the request's If-None-Match header, empty when absent.
    static ApiResult serve(const QString& name, const QByteArray& ifNoneMatch);
};
