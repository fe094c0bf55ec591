#include "ApiCalls.h"
#include "HostProcess.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

namespace {

QVariantHash valueOf(const HttpReply& reply)
{
    return reply.json().toHash().value(QStringLiteral("value")).toHash();
}

QVariantHash stringValue(const QString& text)
{
    return {{QStringLiteral("type"), QStringLiteral("string_")}, {QStringLiteral("string_"), text}};
}

} // namespace

TEST(HostLifecycle, SettingsSurviveARestartAndDefaultsFillTheRest)
{
    HostProcess host;
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();
    ApiCalls api(host.client());
    EXPECT_EQ(valueOf(api.data("settings:/playlists/itemLimit", "value")), ApiCalls::i32(10000));
    ASSERT_EQ(api.setData("settings:/playlists/itemLimit", ApiCalls::i32(25)).status, 200);
    ASSERT_EQ(api.setData("settings:/vendor/custom", stringValue("kept")).status, 200);
    // A refused value changes nothing, in memory or on disk.
    EXPECT_EQ(api.setData("settings:/playlists/itemLimit", QVariantHash{{"type", "i32_"}, {"i32_", "x"}}).status, 400);

    ASSERT_TRUE(host.restart(&error)) << error.toStdString();
    api = ApiCalls(host.client());
    EXPECT_EQ(valueOf(api.data("settings:/playlists/itemLimit", "value")), ApiCalls::i32(25));
    EXPECT_EQ(valueOf(api.data("settings:/vendor/custom", "value")), stringValue("kept"));
    EXPECT_EQ(valueOf(api.data("settings:/language", "value")), stringValue("en"));
    EXPECT_EQ(api.data("settings:/never/set", "value").status, 404);
    EXPECT_FALSE(QFile::exists(host.root() + "/data-rw/settings.json.tmp"));
}

TEST(HostLifecycle, ACorruptSettingsFileIsSetAsideNotOverwritten)
{
    HostProcess host;
    QDir(host.root()).mkpath("data-rw");
    const QByteArray corrupt = "{\"settings:/playlists/itemLimit\": {\"type\": \"i32_\", \"i32_\": 5}, oops";
    {
        QFile file(host.root() + "/data-rw/settings.json");
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(corrupt);
    }
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();
    ApiCalls api(host.client());
    EXPECT_EQ(valueOf(api.data("settings:/playlists/itemLimit", "value")), ApiCalls::i32(10000));
    EXPECT_TRUE(host.log().contains("Corrupt settings file")) << host.log().toStdString();

    const QStringList aside = QDir(host.root() + "/data-rw").entryList({"settings.json.corrupt-*"}, QDir::Files);
    ASSERT_EQ(aside.size(), 1);
    QFile kept(host.root() + "/data-rw/" + aside.first());
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), corrupt);

    // The next change writes a fresh file beside the one set aside.
    ASSERT_EQ(api.setData("settings:/playlists/itemLimit", ApiCalls::i32(7)).status, 200);
    ASSERT_TRUE(host.restart(&error)) << error.toStdString();
    EXPECT_EQ(valueOf(ApiCalls(host.client()).data("settings:/playlists/itemLimit", "value")), ApiCalls::i32(7));
}

TEST(HostLifecycle, ModulesThatCannotStartAreNamedAndSkipped)
{
    HostProcess host({"libvexa_noentry.so", "libvexa_failing.so", "libvexa_testmod.so"});
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();
    const QByteArray log = host.log();
    EXPECT_TRUE(log.contains("libvexa_noentry.so skipped: it has no worker_create")) << log.toStdString();
    EXPECT_TRUE(log.contains("libvexa_failing.so skipped: worker_create failed")) << log.toStdString();
    ApiCalls api(host.client());
    EXPECT_EQ(api.rows("testmod:/items", "title", 0, 0).status, 200);
    EXPECT_EQ(api.data("noentry:/anything").errorName(), "invalidPath");
    EXPECT_TRUE(host.stop());
}
