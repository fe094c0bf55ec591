#pragma once

#include "ApiRequest.h"
#include "ApiResult.h"
#include "ContentApi.h"
#include "SubscriptionApi.h"

#include <QList>
#include <QPair>
#include <QStringList>

#include <functional>

class CMRootWorker;
class SubscriptionHub;

// Maps a request's method and path to the call that handles it. Paths are
// matched segment by segment; "{id}" in a route takes any one segment.
// Unknown paths are 404, known paths with another method 405.
class ApiRouter
{
public:
    ApiRouter(CMRootWorker* root, SubscriptionHub* hub);

    // Every (method, path template) served, as the OpenAPI document names them.
    static QList<QPair<QByteArray, QString>> routes();

    ApiResult dispatch(const ApiRequest& request);

    // The OpenAPI document describing the routes.
    static QByteArray openApiDocument();

private:
    using Handler = std::function<ApiResult(const ApiRequest&, const QStringList& captures)>;
    struct Route
    {
        QByteArray method;
        QString pattern;
        Handler handler;
    };

    static bool match(const QString& pattern, const QString& path, QStringList* captures);

    ContentApi m_content;
    SubscriptionApi m_subscriptions;
    QList<Route> m_routes;
};
