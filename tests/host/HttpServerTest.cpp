#include "EventStreamReader.h"
#include "HttpClient.h"
#include "HttpServer.h"
#include "SubscriptionHub.h"

#include <CMRootWorker.h>

#include <QElapsedTimer>
#include <QMutex>
#include <QThread>

#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace {

// A module that answers set-data on "/echo" at once, keeps the replies of
// "/held" for the test to complete, and never answers "/never".
class HoldingWorker : public CMAbstractWorker
{
public:
    void invoke(const CMPath& path, const QVariant& value, const CMReply<QVariant>& reply) override
    {
        QMutexLocker lock(&m_mutex);
        if (path.path() == QLatin1String("/echo"))
            reply.setData(value);
        else
            m_held.append(reply);
    }
    void getData(const CMPath&, const QStringList&, const CMReply<QVariant>& reply) override
    {
        reply.setData(QVariantHash{{QStringLiteral("title"), QStringLiteral("Node")}});
    }
    int heldCount()
    {
        QMutexLocker lock(&m_mutex);
        return m_held.size();
    }
    void completeAll(const QVariant& data)
    {
        QMutexLocker lock(&m_mutex);
        for (const CMReply<QVariant>& reply : qAsConst(m_held))
            reply.setData(data);
        m_held.clear();
    }

private:
    QMutex m_mutex;
    QList<CMReply<QVariant>> m_held;
};

bool waitUntil(const std::function<bool()>& condition)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.elapsed() > 10000)
            return false;
        QThread::msleep(5);
    }
    return true;
}

QByteArray setData(const char* path, const QVariant& value)
{
    return HttpClient::json(QVariantHash{{QStringLiteral("path"), QString::fromLatin1(path)}, {QStringLiteral("value"), value}});
}

class HttpServerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        CMRoot()->registerWorker(QStringLiteral("srvtest"), &m_worker);
        QString error;
        ASSERT_TRUE(m_server.start(QStringLiteral("127.0.0.1"), 0, &error)) << error.toStdString();
    }
    void TearDown() override
    {
        m_worker.completeAll(QVariant());
        CMRoot()->unregisterWorker(QStringLiteral("srvtest"));
    }

    HoldingWorker m_worker;
    HttpServer m_server{CMRoot(), 30000, 1024 * 1024};
    HttpClient client() const { return HttpClient(m_server.port()); }
};

} // namespace

TEST_F(HttpServerTest, WaitingForModulesHoldsNoThreadAndLateRepliesAreHarmless)
{
    const HttpClient client = this->client();

    // Twice as many unanswered commands as the server has threads.
    std::vector<std::unique_ptr<HttpSocket>> held;
    for (int i = 0; i < 2 * HttpServer::PoolThreads; ++i)
        held.push_back(client.send("POST", QStringLiteral("/api/v1/data"), setData("srvtest:/held", i)));
    ASSERT_TRUE(waitUntil([&]() { return m_worker.heldCount() == 2 * HttpServer::PoolThreads; }));

    const HttpReply echo = client.post(QStringLiteral("/api/v1/data"), setData("srvtest:/echo", 5), 5000);
    EXPECT_EQ(echo.status, 200);
    EXPECT_EQ(echo.body, QByteArray("5"));

    m_worker.completeAll(QVariantHash{{QStringLiteral("done"), true}});
    for (auto& socket : held) {
        const HttpReply reply = HttpReply::read(*socket, QDeadlineTimer(10000));
        EXPECT_EQ(reply.status, 200);
        EXPECT_EQ(reply.json().toHash().value(QStringLiteral("done")), QVariant(true));
    }
}

TEST_F(HttpServerTest, StopAnswersLongPollsEndsStreamsAndWaitsForRepliesInFlight)
{
    const HttpClient client = this->client();
    HttpServer& server = m_server;

    const QString polled = client.post(QStringLiteral("/api/v1/subscriptions"), "{}").json().toHash().value("id").toString();
    const QString streamed = client.post(QStringLiteral("/api/v1/subscriptions"), "{}").json().toHash().value("id").toString();
    ASSERT_FALSE(polled.isEmpty());
    const auto poll = client.send("GET", QStringLiteral("/api/v1/events?subscription=%1&timeout=60").arg(polled), QByteArray());
    EventStreamReader stream;
    ASSERT_TRUE(stream.open(server.port(), QStringLiteral("/api/v1/events/stream?subscription=") + streamed));
    EXPECT_EQ(stream.status(), 200);
    EXPECT_EQ(stream.head().headers.value("content-type"), QByteArray("text/event-stream"));
    const auto command = client.send("POST", QStringLiteral("/api/v1/data"), setData("srvtest:/held", 1));
    ASSERT_TRUE(waitUntil([&]() {
        return server.hub()->inUse(polled) && server.hub()->inUse(streamed) && m_worker.heldCount() == 1;
    }));

    std::thread stopper([&]() { server.stop(); });
    const HttpReply pollReply = HttpReply::read(*poll, QDeadlineTimer(10000));
    EXPECT_EQ(pollReply.status, 200);
    EXPECT_EQ(pollReply.body, QByteArray("[]"));
    EXPECT_TRUE(stream.waitForEnd(10000));
    // The command was in flight when stopping began: it still gets its answer.
    m_worker.completeAll(QStringLiteral("finished"));
    const HttpReply commandReply = HttpReply::read(*command, QDeadlineTimer(10000));
    stopper.join();
    EXPECT_EQ(commandReply.status, 200);
    EXPECT_EQ(commandReply.body, QByteArray("\"finished\""));
    EXPECT_NE(client.get(QStringLiteral("/api/v1/openapi.json"), 2000).status, 200);
}

TEST(HttpServer, RefusesAnAddressItCannotListenOn)
{
    HttpServer server(CMRoot(), 1000, 1024);
    QString error;
    EXPECT_FALSE(server.start(QStringLiteral("not-an-address"), 0, &error));
    EXPECT_FALSE(error.isEmpty());
    HttpServer first(CMRoot(), 1000, 1024);
    ASSERT_TRUE(first.start(QStringLiteral("127.0.0.1"), 0, &error));
    EXPECT_FALSE(server.start(QStringLiteral("127.0.0.1"), first.port(), &error)) << "the port is taken";
}
