#include "ApiRouter.h"

#include "FilesApi.h"
#include "WebAppApi.h"

#include <QFile>

// The resource lives in a static library, whose unreferenced objects the
// linker drops; registering it explicitly keeps the document in the binary.
static int registerHostResources()
{
    Q_INIT_RESOURCE(host);
    return 0;
}

namespace {

const QString kSubscriptionsPath = QStringLiteral("/api/v1/subscriptions");

} // namespace

ApiRouter::ApiRouter(CMRootWorker* root, SubscriptionHub* hub) : m_content(root), m_subscriptions(hub)
{
    m_routes = {
        {"GET", QStringLiteral("/api/v1/rows"), [this](const ApiRequest& r, const QStringList&) { return m_content.rows(r); }},
        {"GET", QStringLiteral("/api/v1/data"), [this](const ApiRequest& r, const QStringList&) { return m_content.data(r); }},
        {"POST", QStringLiteral("/api/v1/data"),
         [this](const ApiRequest& r, const QStringList&) { return m_content.setData(r); }},
        {"POST", kSubscriptionsPath,
         [this](const ApiRequest& r, const QStringList&) { return m_subscriptions.create(r); }},
        {"PATCH", kSubscriptionsPath + QStringLiteral("/{id}"),
         [this](const ApiRequest& r, const QStringList& c) { return m_subscriptions.modify(r, c.value(0)); }},
        {"DELETE", kSubscriptionsPath + QStringLiteral("/{id}"),
         [this](const ApiRequest&, const QStringList& c) { return m_subscriptions.remove(c.value(0)); }},
        {"GET", QStringLiteral("/api/v1/events"),
         [this](const ApiRequest& r, const QStringList&) { return m_subscriptions.events(r); }},
        {"GET", QStringLiteral("/api/v1/events/stream"),
         [this](const ApiRequest& r, const QStringList&) { return m_subscriptions.stream(r); }},
        {"GET", QStringLiteral("/files/{prefix}/{name}"),
         [](const ApiRequest& r, const QStringList& c) {
             return FilesApi::serve(c.value(0), c.value(1), r.header("If-None-Match"));
         }},
        {"GET", QStringLiteral("/"),
         [](const ApiRequest& r, const QStringList&) { return WebAppApi::serve(WebAppApi::IndexName(), r.header("If-None-Match")); }},
        {"GET", QStringLiteral("/{name}"),
         [](const ApiRequest& r, const QStringList& c) {
             return WebAppApi::serve(c.value(0), r.header("If-None-Match"));
         }},
        {"GET", QStringLiteral("/api/v1/openapi.json"),
         [](const ApiRequest&, const QStringList&) {
             const QByteArray document = openApiDocument();
             if (document.isEmpty())
                 return ApiResult::ready(ApiResponse::error(500, ApiResponse::InternalErrorName(),
                                                            QStringLiteral("Internal error"),
                                                            QStringLiteral("The API description is missing")));
             return ApiResult::ready(ApiResponse(200, document, "application/json"));
         }},
    };
}

QList<QPair<QByteArray, QString>> ApiRouter::routes()
{
    ApiRouter router(nullptr, nullptr);
    QList<QPair<QByteArray, QString>> list;
    for (const Route& route : qAsConst(router.m_routes))
        list.append(qMakePair(route.method, route.pattern));
    return list;
}

ApiResult ApiRouter::dispatch(const ApiRequest& request)
{
    QStringList allowed;
    for (const Route& route : qAsConst(m_routes)) {
        QStringList captures;
        if (!match(route.pattern, request.path(), &captures))
            continue;
        if (route.method == request.method())
            return route.handler(request, captures);
        allowed.append(QString::fromLatin1(route.method));
    }
    if (allowed.isEmpty())
        return ApiResult::ready(ApiResponse::error(404, ApiResponse::NotFoundName(), QStringLiteral("Not found"),
                                                   QStringLiteral("No API call at ") + request.path()));
    ApiResponse response = ApiResponse::error(
        405, ApiResponse::MethodNotAllowedName(), QStringLiteral("Method not allowed"),
        QStringLiteral("%1 takes %2, not %3")
            .arg(request.path(), allowed.join(QStringLiteral(", ")), QString::fromLatin1(request.method())));
    response.addHeader("Allow", allowed.join(QStringLiteral(", ")).toLatin1());
    return ApiResult::ready(response);
}

QByteArray ApiRouter::openApiDocument()
{
    static const int registered = registerHostResources();
    Q_UNUSED(registered);
    QFile file(QStringLiteral(":/host/openapi.json"));
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.readAll();
}

bool ApiRouter::match(const QString& pattern, const QString& path, QStringList* captures)
{
    const QStringList want = pattern.split(QLatin1Char('/'));
    const QStringList have = path.split(QLatin1Char('/'));
    if (want.size() != have.size())
        return false;
    for (int i = 0; i < want.size(); ++i) {
        if (want.at(i).startsWith(QLatin1Char('{'))) {
            if (have.at(i).isEmpty())
                return false;
            captures->append(have.at(i));
        } else if (want.at(i) != have.at(i)) {
            return false;
        }
    }
    return true;
}
