#include "ApiInput.h"

#include <gtest/gtest.h>

TEST(ApiInput, PathsAreRefusedWhenEmptyPrefixlessEscapingOrCarryingNul)
{
    CMPath path;
    QString error;
    ASSERT_TRUE(ApiInput::readPath(QStringLiteral("playlists:/menu/playlist?plid=3&name=a..b"), &path, &error));
    EXPECT_EQ(path.param(QStringLiteral("plid")), QStringLiteral("3"));

    const QVariant refused[] = {
        QVariant(),
        QVariant::fromValue(nullptr),
        QVariant(42),
        QVariant(QStringLiteral("")),
        QVariant(QStringLiteral("/no/prefix")),
        QVariant(QStringLiteral("settings:/../etc/passwd")),
        QVariant(QStringLiteral("settings:/a/..")),
        QVariant(QStringLiteral("settings:/a") + QChar(0) + QStringLiteral("b")),
        QVariant(QStringLiteral("settings:/a?x=") + QChar(0)),
    };
    for (const QVariant& value : refused) {
        error.clear();
        EXPECT_FALSE(ApiInput::readPath(value, &path, &error)) << value.toString().toStdString();
        EXPECT_FALSE(error.isEmpty());
    }
}
