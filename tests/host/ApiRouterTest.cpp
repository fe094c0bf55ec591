#include "ApiRouter.h"
#include "SubscriptionHub.h"

#include <CMRootWorker.h>
#include <VexaJson.h>

#include <gtest/gtest.h>

TEST(ApiRouter, TheOpenApiDocumentDescribesEveryRouteAndNothingElse)
{
    QString error;
    const QVariantHash document = VexaJson::parse(ApiRouter::openApiDocument(), &error).toHash();
    ASSERT_FALSE(document.isEmpty()) << error.toStdString();
    EXPECT_TRUE(document.value(QStringLiteral("openapi")).toString().startsWith(QStringLiteral("3.")));
    const QVariantHash paths = document.value(QStringLiteral("paths")).toHash();

    int operations = 0;
    for (const auto& route : ApiRouter::routes()) {
        const QVariantHash item = paths.value(route.second).toHash();
        EXPECT_TRUE(item.contains(QString::fromLatin1(route.first).toLower()))
            << route.first.constData() << " " << route.second.toStdString();
    }
    for (auto it = paths.begin(); it != paths.end(); ++it) {
        for (const QString& key : it.value().toHash().keys()) {
            if (key == QLatin1String("parameters"))
                continue;
            ++operations;
            bool served = false;
            for (const auto& route : ApiRouter::routes())
                served = served || (route.second == it.key() && QString::fromLatin1(route.first).toLower() == key);
            EXPECT_TRUE(served) << "documented but not served: " << key.toStdString() << " " << it.key().toStdString();
        }
    }
    EXPECT_EQ(operations, ApiRouter::routes().size());
}

TEST(ApiRouter, UnknownPathsAre404AndOtherMethods405)
{
    SubscriptionHub hub(CMRoot());
    ApiRouter router(CMRoot(), &hub);
    const auto status = [&](const QByteArray& method, const QString& path) {
        const ApiResult result = router.dispatch(ApiRequest(method, path, {}, QByteArray()));
        return result.kind() == ApiResult::Kind::Ready ? result.response().status() : 0;
    };
    EXPECT_EQ(status("GET", QStringLiteral("/api/v1/nothing")), 404);
    EXPECT_EQ(status("GET", QStringLiteral("/api/v1/rows/extra")), 404);
    EXPECT_EQ(status("GET", QStringLiteral("/api/v1/subscriptions/")), 404);
    EXPECT_EQ(status("DELETE", QStringLiteral("/api/v1/data")), 405);
    EXPECT_EQ(status("GET", QStringLiteral("/api/v1/subscriptions/abc")), 405);
    EXPECT_EQ(status("GET", QStringLiteral("/api/v1/openapi.json")), 200);

    const ApiResult refused = router.dispatch(ApiRequest("PUT", QStringLiteral("/api/v1/data"), {}, QByteArray()));
    ASSERT_EQ(refused.response().headers().size(), 1);
    EXPECT_EQ(refused.response().headers().first().second, QByteArray("GET, POST"));
    EXPECT_EQ(VexaJson::parse(refused.response().body(), nullptr).toHash().value(QStringLiteral("error")).toHash()
                  .value(QStringLiteral("name")).toString(),
              QStringLiteral("methodNotAllowed"));
}
