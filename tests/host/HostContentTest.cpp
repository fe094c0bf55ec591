#include "ApiCalls.h"
#include "ApiRouter.h"
#include "HostProcess.h"

#include <VexaJson.h>

#include <gtest/gtest.h>

namespace {

QVariant json(const char* text)
{
    return VexaJson::parse(text, nullptr);
}

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

} // namespace

TEST_F(HostContent, RowsArePagedWithTheRolesAskedForInOrder)
{
    const HttpReply page = api().rows(QStringLiteral("testmod:/items"), QStringLiteral("path,title,missing"), 10, 14);
    ASSERT_EQ(page.status, 200) << page.body.constData();
    const QVariantHash answer = page.json().toHash();
    EXPECT_EQ(answer.value(QStringLiteral("roles")).toHash().value(QStringLiteral("title")).toString(), QStringLiteral("Test items"));
    EXPECT_EQ(answer.value(QStringLiteral("rowsCount")).toInt(), 25);
    const QVariantList rows = answer.value(QStringLiteral("rows")).toList();
    ASSERT_EQ(rows.size(), 5);
    EXPECT_EQ(VexaJson::toJson(rows.first()), QByteArray(R"(["testmod:/items/10","Item 10",null])"));
    EXPECT_EQ(VexaJson::toJson(rows.last()), QByteArray(R"(["testmod:/items/14","Item 14",null])"));

    // Defaults: from 0, to from + 99, every role, each row an object.
    const QVariantList all = api().rows(QStringLiteral("testmod:/items")).json().toHash().value(QStringLiteral("rows")).toList();
    ASSERT_EQ(all.size(), 25);
    EXPECT_EQ(all.at(24).toHash().value(QStringLiteral("type")).toString(), QStringLiteral("audio"));
    const QVariantList tail = api().rows(QStringLiteral("testmod:/items"), QStringLiteral("title"), 20)
                                  .json().toHash().value(QStringLiteral("rows")).toList();
    EXPECT_EQ(tail, QVariantList({QVariantList{"Item 20"}, QVariantList{"Item 21"}, QVariantList{"Item 22"},
                                  QVariantList{"Item 23"}, QVariantList{"Item 24"}}));
    EXPECT_EQ(api().rows(QStringLiteral("testmod:/nothing")).errorName(), QStringLiteral("invalidPath"));

    // The served document is the router's, as JSON.
    const HttpReply document = m_host.client().get(QStringLiteral("/api/v1/openapi.json"));
    EXPECT_EQ(document.headers.value("content-type"), QByteArray("application/json"));
    EXPECT_EQ(document.body, ApiRouter::openApiDocument());
}

TEST_F(HostContent, DataAnswersValuesOnValuePathsAndRolesOnNodes)
{
    EXPECT_EQ(api().data(QStringLiteral("settings:/playlists/itemLimit")).json(),
              json(R"({"value": {"type": "i32_", "i32_": 10000}})"));
    // ".." inside a parameter value is no escape.
    const HttpReply node = api().data(QStringLiteral("testmod:/items?name=a..b"), QStringLiteral("title,type"));
    ASSERT_EQ(node.status, 200) << node.body.constData();
    EXPECT_EQ(node.json(), json(R"({"title": "Test items", "type": "container"})"));

    EXPECT_EQ(api().data(QStringLiteral("testmod:/nothing")).status, 404);
    const HttpReply noModule = api().data(QStringLiteral("nosuch:/x"));
    EXPECT_EQ(noModule.status, 404);
    EXPECT_EQ(noModule.errorName(), QStringLiteral("invalidPath"));
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

    EXPECT_EQ(api().setData(QStringLiteral("settings:/playlists/itemLimit"), ApiCalls::i32(500)).status, 200);
    EXPECT_EQ(api().data(QStringLiteral("settings:/playlists/itemLimit")).json(), json(R"({"value": {"type": "i32_", "i32_": 500}})"));
    EXPECT_EQ(api().setData(QStringLiteral("nosuch:/command"), 1).errorName(), QStringLiteral("invalidPath"));
}

TEST_F(HostContent, PlayerControlsAnswer400ForBadInputAnd422ForRefusals)
{
    const QString control = QStringLiteral("player:/control");
    const HttpReply unknown = api().setData(control, json(R"({"control": "dance"})"));
    EXPECT_EQ(unknown.status, 400);
    EXPECT_EQ(unknown.errorName(), QStringLiteral("badRequest"));
    EXPECT_EQ(api().setData(control, json(R"({"control": "seek", "positionMs": "later"})")).status, 400);
    EXPECT_EQ(api().setData(QStringLiteral("player:/playMode"), json(R"({"type": "i32_", "i32_": 1})")).status, 400);

    // Refusals of the player and of the play logic are a command's refusals.
    EXPECT_EQ(api().setData(control, json(R"({"control": "pause"})")).status, 422);
    const HttpReply noTrack = api().setData(control, json(R"({"control": "play", "index": 3,
        "container": {"mediaData": {"metaData": {"playLogicPath": "testmod:/playlogic"}}, "tracks": []}})"));
    EXPECT_EQ(noTrack.status, 422);
    EXPECT_EQ(noTrack.errorMessage(), QStringLiteral("The container has no track 3"));
    EXPECT_EQ(api().data(QStringLiteral("player:/playMode"), QStringLiteral("value")).json(),
              json(R"({"value": {"type": "playerPlayMode", "playerPlayMode": "normal"}})"));
}

TEST(HostReplyTimeout, ACommandSlowerThanTheReplyTimeoutIs504AndItsLateReplyGoesNowhere)
{
    HostProcess host({QStringLiteral("libvexa_testmod.so")}, {QStringLiteral("--reply-timeout"), QStringLiteral("300")});
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();
    const ApiCalls api(host.client());
    const HttpReply slow = api.setData(QStringLiteral("testmod:/slow"), json(R"({"ms": 1500})"));
    EXPECT_EQ(slow.status, 504);
    EXPECT_EQ(slow.errorName(), QStringLiteral("timeout"));
    // Queued behind the slow one on the module's thread, answered after its late reply.
    EXPECT_EQ(api.setData(QStringLiteral("testmod:/slow"), json(R"({"ms": 1})")).body, QByteArray("true"));
    EXPECT_TRUE(host.stop()) << host.log().constData();
}
