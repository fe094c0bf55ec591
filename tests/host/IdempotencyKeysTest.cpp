#include "IdempotencyKeys.h"

#include <gtest/gtest.h>

namespace {

// A finished command under key whose answer is a text of chars characters.
CMReply<QVariant> answered(IdempotencyKeys& keys, const QByteArray& key, int chars)
{
    CMReply<QVariant> reply;
    EXPECT_EQ(keys.claim(key, key + "-body", &reply), IdempotencyKeys::Claim::New);
    reply.setData(QString(chars, QLatin1Char('x')));
    return reply;
}

} // namespace

TEST(IdempotencyKeys, KeptOutcomesStayWithinTheirSizeOldestGoingFirst)
{
    IdempotencyKeys keys;
    const int sixMiB = 3 * 1024 * 1024; // characters of two bytes
    answered(keys, "a", sixMiB);
    answered(keys, "b", sixMiB);
    EXPECT_GT(keys.outcomeBytes(), 12 * 1024 * 1024);
    answered(keys, "c", sixMiB);
    EXPECT_LE(keys.outcomeBytes(), IdempotencyKeys::MaxOutcomeBytes);

    // "a" made room: sent again, it runs anew; "c" still answers from its outcome.
    CMReply<QVariant> retry;
    EXPECT_EQ(keys.claim("c", "c-body", &retry), IdempotencyKeys::Claim::Retry);
    EXPECT_EQ(retry.data().toString().size(), sixMiB);
    CMReply<QVariant> again;
    EXPECT_EQ(keys.claim("a", "a-body", &again), IdempotencyKeys::Claim::New);

    // One outcome larger than all the room is still kept: its client is the likely retrier.
    answered(keys, "huge", 9 * 1024 * 1024);
    EXPECT_EQ(keys.claim("huge", "huge-body", &retry), IdempotencyKeys::Claim::Retry);
}
