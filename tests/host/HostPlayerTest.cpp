#include "ApiCalls.h"
#include "HostProcess.h"

#include <VexaJson.h>

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace {

const QString kStatus = QStringLiteral("player:/status");
const QString kPosition = QStringLiteral("player:/position");
const QString kControl = QStringLiteral("player:/control");

QVariant json(const char* text)
{
    return VexaJson::parse(text, nullptr);
}

// The real host, its player running a thousand times faster than real time.
class HostPlayer : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QString error;
        ASSERT_TRUE(m_host.start(&error)) << error.toStdString();
    }

    ApiCalls api() const { return ApiCalls(m_host.client()); }

    // Polls subscription id until an event satisfies done or ten seconds passed; all events seen.
    QVariantList pollUntil(const QString& id, const std::function<bool(const QVariantHash&)>& done) const
    {
        QVariantList seen;
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 10000) {
            const HttpReply reply = api().poll(id, 1);
            EXPECT_EQ(reply.status, 200) << reply.body.constData();
            for (const QVariant& event : reply.json().toList()) {
                seen.append(event);
                if (done(event.toHash()))
                    return seen;
            }
        }
        ADD_FAILURE() << "the awaited event did not come";
        return seen;
    }

    HostProcess m_host{{QStringLiteral("libvexa_testmod.so")}, {QStringLiteral("--time-scale"), QStringLiteral("1000")}};
};

} // namespace

TEST_F(HostPlayer, AContainerPlaysThroughTheTestModulesPlayLogicOverHttp)
{
    const QString id = api().subscribe({{QStringLiteral("value"), kStatus}, {QStringLiteral("value"), kPosition}});
    ASSERT_FALSE(id.isEmpty());

    const QVariant play = json(R"({"control": "play", "index": 0,
        "container": {"title": "Album", "mediaData": {"metaData": {"playLogicPath": "testmod:/playlogic"}},
                      "tracks": [{"title": "One", "mediaData": {"resources": [{"uri": "test://1", "duration": 20}]}},
                                 {"title": "Two", "mediaData": {"resources": [{"uri": "test://2", "duration": 20}]}}]}})");
    const HttpReply played = api().setData(kControl, play);
    ASSERT_EQ(played.status, 200) << played.body.constData();

    // Status events follow the tracks until playback ends by itself.
    bool playing = false;
    const QVariantList events = pollUntil(id, [&](const QVariantHash& event) {
        const QVariantHash value = event.value(QStringLiteral("value")).toHash();
        if (event.value(QStringLiteral("path")) != kStatus)
            return false;
        playing = playing || value.value(QStringLiteral("state")) == QStringLiteral("playing");
        return playing && value.value(QStringLiteral("state")) == QStringLiteral("stopped");
    });
    QStringList titles;
    int positions = 0;
    for (const QVariant& event : events) {
        const QVariantHash hash = event.toHash();
        if (hash.value(QStringLiteral("path")) == kPosition) {
            EXPECT_EQ(hash.value(QStringLiteral("value")).toHash().value(QStringLiteral("type")), QStringLiteral("i64_"));
            ++positions;
            continue;
        }
        const QString title =
            hash.value(QStringLiteral("value")).toHash().value(QStringLiteral("track")).toHash().value(QStringLiteral("title")).toString();
        if (!title.isEmpty() && (titles.isEmpty() || titles.last() != title))
            titles.append(title);
    }
    EXPECT_EQ(titles, QStringList({QStringLiteral("One"), QStringLiteral("Two")}));
    EXPECT_GE(positions, 2);

    const QVariantHash status = api().data(kStatus, QStringLiteral("value")).json().toHash().value(QStringLiteral("value")).toHash();
    EXPECT_EQ(status.value(QStringLiteral("state")), QStringLiteral("stopped"));
    EXPECT_EQ(status.value(QStringLiteral("playLogicPath")), QStringLiteral("testmod:/playlogic"));
    EXPECT_EQ(api().data(kPosition, QStringLiteral("value")).json(), json(R"({"value": {"type": "i64_", "i64_": 0}})"));
}

TEST_F(HostPlayer, ControlsAnswerWithTheRightStatus)
{
    const HttpReply unknown = api().setData(kControl, json(R"({"control": "dance"})"));
    EXPECT_EQ(unknown.status, 400);
    EXPECT_EQ(unknown.errorName(), QStringLiteral("badRequest"));
    EXPECT_EQ(api().setData(kControl, json(R"({"control": "seek", "positionMs": "later"})")).status, 400);
    EXPECT_EQ(api().setData(QStringLiteral("player:/playMode"), json(R"({"type": "i32_", "i32_": 1})")).status, 400);

    // Refusals of the player and of the play logic are a command's refusals.
    EXPECT_EQ(api().setData(kControl, json(R"({"control": "pause"})")).status, 422);
    const HttpReply noTrack = api().setData(kControl, json(R"({"control": "play", "index": 3,
        "container": {"mediaData": {"metaData": {"playLogicPath": "testmod:/playlogic"}}, "tracks": []}})"));
    EXPECT_EQ(noTrack.status, 422);
    EXPECT_EQ(noTrack.errorMessage(), QStringLiteral("The container has no track 3"));

    EXPECT_EQ(api().data(QStringLiteral("player:/playMode"), QStringLiteral("value")).json(),
              json(R"({"value": {"type": "playerPlayMode", "playerPlayMode": "normal"}})"));
    EXPECT_TRUE(m_host.stop());
}
