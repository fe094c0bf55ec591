#include "ApiCalls.h"
#include "ApiRouter.h"
#include "HostProcess.h"

#include <VexaJson.h>

#include <gtest/gtest.h>

namespace {

class HostContent : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QString error;
        ASSERT_TRUE(m_host.start(&error)) << error.toStdString();
    }

    HostProcess m_host;
    // The port is known once the host started.
    ApiCalls api() const { return ApiCalls(m_host.client()); }
};

QVariant json(const char* text)
{
    return VexaJson::parse(text, nullptr);
}

} // namespace

TEST_F(HostContent, RowsArePagedWithTheRolesAskedForInOrder)
{
    const HttpReply page = api().rows(QStringLiteral("testmod:/items"), QStringLiteral("path,title,missing"), 10, 14);
    ASSERT_EQ(page.status, 200) << page.body.constData();
    const QVariantHash answer = page.json().toHash();
    EXPECT_EQ(answer.value(QStringLiteral("title")).toString(), QStringLiteral("Test items"));
    EXPECT_EQ(answer.value(QStringLiteral("roles")).toHash().value(QStringLiteral("title")).toString(), QStringLiteral("Test items"));
    EXPECT_EQ(answer.value(QStringLiteral("rowsCount")).toInt(), 25);
    const QVariantList rows = answer.value(QStringLiteral("rows")).toList();
    ASSERT_EQ(rows.size(), 5);
    EXPECT_EQ(VexaJson::toJson(rows.first()), QByteArray(R"(["testmod:/items/10","Item 10",null])"));
    EXPECT_EQ(VexaJson::toJson(rows.last()), QByteArray(R"(["testmod:/items/14","Item 14",null])"));

    // Defaults: from 0, to from + 99, every role, each row an object.
    const QVariantList all = api().rows(QStringLiteral("testmod:/items")).json().toHash().value(QStringLiteral("rows")).toList();
    ASSERT_EQ(all.size(), 25);
    EXPECT_EQ(all.at(24).toHash().value(QStringLiteral("title")).toString(), QStringLiteral("Item 24"));
    EXPECT_EQ(all.at(24).toHash().value(QStringLiteral("type")).toString(), QStringLiteral("audio"));

    const QVariantList tail = api().rows(QStringLiteral("testmod:/items"), QStringLiteral("title"), 20)
                                  .json().toHash().value(QStringLiteral("rows")).toList();
    ASSERT_EQ(tail.size(), 5);
    EXPECT_EQ(tail.first(), QVariant(QVariantList{QStringLiteral("Item 20")}));

    EXPECT_EQ(api().rows(QStringLiteral("testmod:/nothing")).errorName(), QStringLiteral("invalidPath"));
    const HttpReply noModule = api().rows(QStringLiteral("nosuch:/items"));
    EXPECT_EQ(noModule.status, 404);
    EXPECT_EQ(noModule.errorName(), QStringLiteral("invalidPath"));
}

TEST_F(HostContent, DataAnswersValuesOnValuePathsAndRolesOnNodes)
{
    const HttpReply setting = api().data(QStringLiteral("settings:/playlists/itemLimit"));
    ASSERT_EQ(setting.status, 200);
    EXPECT_EQ(setting.json(), json(R"({"value": {"type": "i32_", "i32_": 10000}})"));

    const HttpReply node = api().data(QStringLiteral("testmod:/items"), QStringLiteral("title,type"));
    ASSERT_EQ(node.status, 200) << node.body.constData();
    EXPECT_EQ(node.json(), json(R"({"title": "Test items", "type": "container"})"));

    EXPECT_EQ(api().data(QStringLiteral("testmod:/nothing")).status, 404);
    EXPECT_EQ(api().data(QStringLiteral("nosuch:/x")).errorName(), QStringLiteral("invalidPath"));
}

TEST_F(HostContent, SetDataReachesCommandsOnTheirWorkerThreadAndRefusalsAre422)
{
    const HttpReply command = api().setData(QStringLiteral("testmod:/command"), json(R"({"list": [1, "two"], "n": null})"));
    ASSERT_EQ(command.status, 200) << command.body.constData();
    EXPECT_EQ(command.json(), json(R"({"onWorkerThread": true, "value": {"list": [1, "two"], "n": null}})"));
    EXPECT_EQ(api().setData(QStringLiteral("testmod:/command"), QVariant::fromValue(nullptr)).json(),
              json(R"({"onWorkerThread": true, "value": null})"));

    const HttpReply refused = api().setData(QStringLiteral("testmod:/refuse"), json(R"({"reason": "not today"})"));
    EXPECT_EQ(refused.status, 422);
    EXPECT_EQ(refused.errorName(), QStringLiteral("error"));
    EXPECT_EQ(refused.errorMessage(), QStringLiteral("Refused: not today"));

    const HttpReply set = api().setData(QStringLiteral("settings:/playlists/itemLimit"), ApiCalls::i32(500));
    EXPECT_EQ(set.status, 200) << set.body.constData();
    EXPECT_EQ(api().data(QStringLiteral("settings:/playlists/itemLimit")).json(), json(R"({"value": {"type": "i32_", "i32_": 500}})"));

    EXPECT_EQ(api().setData(QStringLiteral("nosuch:/command"), 1).errorName(), QStringLiteral("invalidPath"));
}

TEST_F(HostContent, TheServedOpenApiDocumentListsEveryRoute)
{
    const HttpReply reply = m_host.client().get(QStringLiteral("/api/v1/openapi.json"));
    ASSERT_EQ(reply.status, 200);
    EXPECT_EQ(reply.headers.value("content-type"), QByteArray("application/json"));
    const QVariantHash paths = reply.json().toHash().value(QStringLiteral("paths")).toHash();
    ASSERT_FALSE(paths.isEmpty()) << "not valid JSON or no paths";
    for (const auto& route : ApiRouter::routes())
        EXPECT_TRUE(paths.value(route.second).toHash().contains(QString::fromLatin1(route.first).toLower()))
            << route.first.constData() << " " << route.second.toStdString();
}

TEST(HostReplyTimeout, ACommandSlowerThanTheReplyTimeoutIs504AndTheHostGoesOn)
{
    HostProcess host({QStringLiteral("libvexa_testmod.so")}, {QStringLiteral("--reply-timeout"), QStringLiteral("300")});
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();
    const ApiCalls api(host.client());
    const HttpReply slow = api.setData(QStringLiteral("testmod:/slow"), json(R"({"ms": 1500})"));
    EXPECT_EQ(slow.status, 504);
    EXPECT_EQ(slow.errorName(), QStringLiteral("timeout"));
    EXPECT_EQ(api.setData(QStringLiteral("testmod:/slow"), json(R"({"ms": 1})")).body, QByteArray("true"));
    EXPECT_TRUE(host.stop()) << host.log().constData();
}
