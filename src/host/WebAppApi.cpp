#include "WebAppApi.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QHash>

static int registerWebResources()
{
    Q_INIT_RESOURCE(web);
    return 0;
}

namespace {

struct WebFile
{
    QByteArray body;
    QByteArray contentType;
    QByteArray etag;
};

QByteArray contentTypeOf(const QString& name)
{
    static const QHash<QString, QByteArray> types{
        {QStringLiteral("html"), "text/html; charset=utf-8"},
        {QStringLiteral("js"), "text/javascript; charset=utf-8"},
        {QStringLiteral("css"), "text/css; charset=utf-8"},
        {QStringLiteral("svg"), "image/svg+xml"},
        {QStringLiteral("json"), "application/json"},
    };
    return types.value(name.section(QLatin1Char('.'), -1), "application/octet-stream");
}

// Read once: the resources are part of the binary and never change while it runs.
const QHash<QString, WebFile>& webFiles()
{
    static const QHash<QString, WebFile> files = [] {
        registerWebResources();
        QHash<QString, WebFile> loaded;
        const QDir dir(QStringLiteral(":/web"));
        for (const QString& name : dir.entryList(QDir::Files)) {
            QFile file(dir.filePath(name));
            if (!file.open(QIODevice::ReadOnly))
                continue;
            WebFile entry;
            entry.body = file.readAll();
            entry.contentType = contentTypeOf(name);
            entry.etag = '"' + QCryptographicHash::hash(entry.body, QCryptographicHash::Sha1).toHex().left(20) + '"';
            loaded.insert(name, entry);
        }
        return loaded;
    }();
    return files;
}

} // namespace

ApiResult WebAppApi::serve(const QString& name, const QByteArray& ifNoneMatch)
{
    const auto found = webFiles().constFind(name);
    if (found == webFiles().constEnd())
        return ApiResult::ready(ApiResponse::error(404, ApiResponse::NotFoundName(), QStringLiteral("Not found"),
                                                   QStringLiteral("No file /") + name));
    const WebFile& file = found.value();
    const bool unchanged = ApiResponse::unchangedFor(ifNoneMatch, file.etag);
    ApiResponse response(unchanged ? 304 : 200, unchanged ? QByteArray() : file.body, file.contentType);
    response.addHeader("ETag", file.etag);
    response.addHeader("Cache-Control", "no-cache");
    response.addHeader("X-Content-Type-Options", "nosniff");
    // The app builds its page from data with text nodes only; should that
    // ever slip, nothing injected can run or load scripts.
    if (name == IndexName())
        response.addHeader("Content-Security-Policy",
                           "default-src 'self'; img-src 'self' data: http: https:; object-src 'none'; "
                           "base-uri 'none'; frame-ancestors 'none'");
    return ApiResult::ready(response);
}
