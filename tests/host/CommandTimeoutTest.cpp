#include "HostProcess.h"

#include <QDeadlineTimer>
#include <QThread>

#include <gtest/gtest.h>

namespace {

// The test module's /count holds its thread for ms, then answers how many
// times it was carried out.
QByteArray count(int ms)
{
    return HttpClient::json(QVariantHash{{"path", "testmod:/count"}, {"value", QVariantHash{{"ms", ms}}}});
}

HttpReply post(const HostProcess& host, const QByteArray& body, const QByteArray& key = QByteArray())
{
    QByteArray request = "POST /api/v1/data HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n"
                         "Content-Type: application/json\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\n";
    if (!key.isEmpty())
        request += "Idempotency-Key: " + key + "\r\n";
    return host.client().raw(request + "\r\n" + body, 15000);
}

// Sends body until it is answered otherwise than with a 504, as a client
// that was told retrying is safe does.
HttpReply postUntilAnswered(const HostProcess& host, const QByteArray& body, const QByteArray& key = QByteArray())
{
    HttpReply reply;
    const QDeadlineTimer deadline(15000);
    do {
        reply = post(host, body, key);
    } while (reply.status == 504 && !deadline.hasExpired());
    return reply;
}

class CommandTimeouts : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QString error;
        ASSERT_TRUE(m_host.start(&error)) << error.toStdString();
    }

    HostProcess m_host{{QStringLiteral("libvexa_testmod.so")}, {QStringLiteral("--reply-timeout"), QStringLiteral("300")}};
};

} // namespace

TEST_F(CommandTimeouts, ACommandStillQueuedWhenItsTimeRanOutIsNotCarriedOut)
{
    const auto running = m_host.client().send("POST", QStringLiteral("/api/v1/data"), count(1200));
    ASSERT_TRUE(running);
    QThread::msleep(100);
    const HttpReply queued = post(m_host, count(0));
    EXPECT_EQ(queued.status, 504);
    EXPECT_TRUE(queued.errorMessage().contains("will not be carried out")) << queued.body.constData();

    const HttpReply started = HttpReply::read(*running, QDeadlineTimer(5000));
    EXPECT_EQ(started.status, 504);
    EXPECT_TRUE(started.errorMessage().contains("may still be carried out")) << started.body.constData();
    EXPECT_TRUE(started.errorMessage().contains("Idempotency-Key")) << started.body.constData();

    // The started command ran, the withdrawn one did not: this is the second.
    const HttpReply next = postUntilAnswered(m_host, count(0));
    EXPECT_EQ(next.status, 200);
    EXPECT_EQ(next.body, "2");
}

TEST_F(CommandTimeouts, ARetryWithTheSameIdempotencyKeyAnswersTheFirstOutcome)
{
    const HttpReply first = post(m_host, count(900), "add-7f3a");
    EXPECT_EQ(first.status, 504);

    // The retries wait for the command still running, then have its answer.
    const HttpReply retried = postUntilAnswered(m_host, count(900), "add-7f3a");
    EXPECT_EQ(retried.status, 200);
    EXPECT_EQ(retried.body, "1");
    const HttpReply again = post(m_host, count(900), "add-7f3a");
    EXPECT_EQ(again.status, 200);
    EXPECT_EQ(again.body, "1");

    const HttpReply reused = post(m_host, count(0), "add-7f3a");
    EXPECT_EQ(reused.status, 422);
    EXPECT_EQ(reused.errorName(), "idempotencyKeyReused");
    EXPECT_EQ(post(m_host, count(0), QByteArray(200, 'k')).status, 400);

    // Whatever the retries were, the command was carried out once.
    EXPECT_EQ(post(m_host, count(0)).body, "2");
}
