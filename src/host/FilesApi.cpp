#include "FilesApi.h"

#include <QFile>
#include <QRegularExpression>

ApiResult FilesApi::serve(const QString& prefix, const QString& name, const QByteArray& ifNoneMatch)
{
    static const QRegularExpression prefixPattern(QStringLiteral("^[a-z][a-z0-9_]*$"));
    static const QRegularExpression namePattern(QStringLiteral("^([0-9a-fA-F]+)\\.(jpg|png)$"));
    const QRegularExpressionMatch match = namePattern.match(name);
    QFile file(QStringLiteral("data-rw/%1/public/%2").arg(prefix, name));
    if (!prefixPattern.match(prefix).hasMatch() || !match.hasMatch() || !file.open(QIODevice::ReadOnly))
        return ApiResult::ready(ApiResponse::error(404, ApiResponse::NotFoundName(), QStringLiteral("Not found"),
                                                   QStringLiteral("No file ") + prefix + QLatin1Char('/') + name));
    const QByteArray etag = '"' + match.captured(1).toLatin1() + '"';
    const bool unchanged = ApiResponse::unchangedFor(ifNoneMatch, etag);
    ApiResponse response(unchanged ? 304 : 200, unchanged ? QByteArray() : file.readAll(),
                         match.captured(2) == QLatin1String("png") ? "image/png" : "image/jpeg");
    response.addHeader("ETag", etag);
    response.addHeader("Cache-Control", "public, max-age=" + QByteArray::number(MaxAgeSeconds));
    return ApiResult::ready(response);
}
