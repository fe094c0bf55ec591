#pragma once

#include "ApiResult.h"

#include <QString>

// The files modules publish under data-rw/<prefix>/public/, served at
// /files/<prefix>/<name>. Only names of hexadecimal digits with .jpg or .png
// are served: such a name can neither climb out of the folder nor reach
// anything a module did not put there. Names are content addresses, so an
// answer may be cached for long, and a client that names the ETag it holds
// in If-None-Match gets 304 Not Modified without the file.
class FilesApi
{
public:
    static constexpr int MaxAgeSeconds = 7 * 24 * 3600;

    static ApiResult serve(const QString& prefix, const QString& name, const QByteArray& ifNoneMatch = QByteArray());
};
