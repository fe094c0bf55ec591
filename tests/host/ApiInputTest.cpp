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

TEST(ApiInput, NumbersRolesAndBodies)
{
    int v = -1;
    QString error;
    EXPECT_TRUE(ApiInput::readInt(QStringLiteral("12"), 0, 100, &v, &error));
    EXPECT_EQ(v, 12);
    for (const char* bad : {"", "x", "1.5", "-1", "101", "99999999999999999999"})
        EXPECT_FALSE(ApiInput::readInt(QString::fromLatin1(bad), 0, 100, &v, &error)) << bad;

    EXPECT_EQ(ApiInput::readRoles(QString()), QStringList{QStringLiteral("*")});
    EXPECT_EQ(ApiInput::readRoles(QStringLiteral("title, path,,type")),
              (QStringList{QStringLiteral("title"), QStringLiteral("path"), QStringLiteral("type")}));

    QVariantHash object;
    EXPECT_TRUE(ApiInput::readObject(R"({"path": "a:/b"})", &object, &error));
    EXPECT_EQ(object.value(QStringLiteral("path")).toString(), QStringLiteral("a:/b"));
    for (const char* bad : {"", "{", "[1]", "\"text\"", "null", "{\"a\": 1} trailing"})
        EXPECT_FALSE(ApiInput::readObject(bad, &object, &error)) << bad;
}
