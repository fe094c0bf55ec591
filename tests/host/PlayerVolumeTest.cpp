#include "ApiCalls.h"
#include "HostProcess.h"

#include <gtest/gtest.h>

namespace {

const QString kVolume = QStringLiteral("player:/volume");

// player:/volume of the real host, with each player behind it.
class PlayerVolume : public ::testing::TestWithParam<const char*>
{
protected:
    QVariant volume(const ApiCalls& api) const { return api.data(kVolume, "value").json().toHash().value("value"); }
};

TEST_P(PlayerVolume, IsSetAnnouncedCheckedAndKeptAcrossARestart)
{
    HostProcess host({QStringLiteral("libvexa_testmod.so")}, {"--player", GetParam(), "--audio-sink", "fakesink"});
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();
    const ApiCalls api(host.client());
    EXPECT_EQ(volume(api), QVariant(ApiCalls::i32(100)));

    const QString id = api.subscribe({{"value", kVolume}});
    ASSERT_EQ(api.setData(kVolume, ApiCalls::i32(35)).status, 200);
    const QVariantList events = api.poll(id, 5).json().toList();
    ASSERT_EQ(events.size(), 1);
    EXPECT_EQ(events.first().toHash().value("value"), QVariant(ApiCalls::i32(35)));

    const QList<QVariant> refused = {
        ApiCalls::i32(101), ApiCalls::i32(-1),
        QVariantHash{{"type", "string_"}, {"string_", "50"}},
        QVariantHash{{"type", "i32_"}, {"i32_", "loud"}},
        QVariantHash{{"type", "i32_"}, {"i32_", 50.5}},
        50,
    };
    for (const QVariant& value : refused)
        EXPECT_EQ(api.setData(kVolume, value).status, 400) << value.toString().toStdString();
    EXPECT_EQ(volume(api), QVariant(ApiCalls::i32(35)));
    EXPECT_TRUE(api.poll(id, 0).json().toList().isEmpty()) << "a refusal announces nothing";

    ASSERT_TRUE(host.restart(&error)) << error.toStdString();
    EXPECT_EQ(volume(api), QVariant(ApiCalls::i32(35)));
}

INSTANTIATE_TEST_SUITE_P(BothPlayers, PlayerVolume, ::testing::Values("emulated", "gstreamer"),
                         [](const ::testing::TestParamInfo<const char*>& info) { return std::string(info.param); });

} // namespace
