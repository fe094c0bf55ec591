#include "ApiCalls.h"
#include "HostProcess.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

QString settingPath(int i)
{
    return QStringLiteral("settings:/burst/%1").arg(i);
}

} // namespace

TEST(HostSettings, EverySettingOfABurstAnsweredBeforeAKillIsThereAfterIt)
{
    constexpr int kRounds = 5;
    constexpr int kBurst = 16;
    HostProcess host;
    for (int round = 0; round <= kRounds; ++round) {
        QString error;
        ASSERT_TRUE(host.start(&error)) << error.toStdString();
        const ApiCalls api(host.client());
        if (round > 0) {
            for (int i = 0; i < kBurst; ++i) {
                const QVariantHash value =
                    api.data(settingPath(i), QStringLiteral("value")).json().toHash().value(QStringLiteral("value")).toHash();
                EXPECT_EQ(value, ApiCalls::i32((round - 1) * 100 + i)) << "round " << round << ", setting " << i;
            }
        }
        if (round == kRounds)
            break;
        // Every request is sent before any answer is read, so that they
        // arrive while earlier ones are being written.
        std::vector<std::unique_ptr<HttpSocket>> burst;
        for (int i = 0; i < kBurst; ++i) {
            const QVariantHash body{{QStringLiteral("path"), settingPath(i)},
                                    {QStringLiteral("value"), ApiCalls::i32(round * 100 + i)}};
            burst.push_back(host.client().send("POST", QStringLiteral("/api/v1/data"), HttpClient::json(body)));
            ASSERT_TRUE(burst.back());
        }
        for (auto& socket : burst)
            ASSERT_EQ(HttpReply::read(*socket, QDeadlineTimer(15000)).status, 200);
        host.kill();
    }
}
