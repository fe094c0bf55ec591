#include "ApiRouter.h"

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
