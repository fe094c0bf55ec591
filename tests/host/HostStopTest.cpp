#include "ApiCalls.h"
#include "HostProcess.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <memory>
#include <thread>
#include <vector>

namespace {

// What became of one request made while the host stopped.
enum class Outcome { Answered, Refused, CutOff };

Outcome requestOnce(quint16 port)
{
    HttpSocket socket;
    if (!socket.connectTo(QStringLiteral("127.0.0.1"), port))
        return Outcome::Refused;
    const QByteArray request = QByteArray("GET ") + HostProcess::SmallAnswerTarget
                             + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n";
    if (socket.sendAll(request) && HttpReply::read(socket, QDeadlineTimer(10000)).status == 200)
        return Outcome::Answered;
    return Outcome::CutOff;
}

} // namespace

TEST(HostStop, SigtermAnswersWhatWasAcceptedAndRefusesWhatCameAfter)
{
    HostProcess host;
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();
    const ApiCalls api(host.client());
    const quint16 port = host.port();

    // Clients that keep connecting, before, during and after the stop.
    std::atomic<bool> done{false};
    std::atomic<int> answered{0}, refused{0}, cutOff{0};
    std::vector<std::thread> clients;
    for (int i = 0; i < 3; ++i) {
        clients.emplace_back([&]() {
            while (!done) {
                switch (requestOnce(port)) {
                case Outcome::Answered: ++answered; break;
                case Outcome::Refused:
                    ++refused;
                    QThread::msleep(5);
                    break;
                case Outcome::CutOff: ++cutOff; break;
                }
            }
        });
    }
    // Work in flight: commands the module answers later, and a long poll.
    const QByteArray slow = HttpClient::json(QVariantHash{{"path", "testmod:/slow"}, {"value", QVariantHash{{"ms", 1500}}}});
    std::vector<std::unique_ptr<HttpSocket>> commands;
    for (int i = 0; i < 4; ++i)
        commands.push_back(host.client().send("POST", QStringLiteral("/api/v1/data"), slow));
    const QString id = api.subscribe({{QStringLiteral("value"), QStringLiteral("power:/target")}});
    ASSERT_FALSE(id.isEmpty());
    const auto poll = host.client().send("GET", ApiCalls::pollTarget(id, 60), QByteArray());
    QThread::msleep(300);

    EXPECT_TRUE(host.stop()) << "the host exits by itself, with status 0";
    QThread::msleep(1500);
    done = true;
    for (std::thread& client : clients)
        client.join();

    for (auto& command : commands) {
        ASSERT_TRUE(command);
        const HttpReply reply = HttpReply::read(*command, QDeadlineTimer(1000));
        EXPECT_EQ(reply.status, 200);
        EXPECT_EQ(reply.body, "true");
    }
    ASSERT_TRUE(poll);
    EXPECT_EQ(HttpReply::read(*poll, QDeadlineTimer(1000)).status, 200);
    EXPECT_EQ(cutOff, 0) << answered << " answered, " << refused << " refused";
    EXPECT_GT(answered, 0);
    EXPECT_GT(refused, 0);
}

TEST(HostStop, SigtermWhileStartingStopsCleanlyWithoutServing)
{
    HostProcess host;
    QDir root(host.root());
    QFile(root.filePath(QStringLiteral("testmod-hold-start"))).open(QIODevice::WriteOnly);
    QString error;
    ASSERT_TRUE(host.launch(&error)) << error.toStdString();
    QElapsedTimer waited;
    waited.start();
    while (!root.exists(QStringLiteral("testmod-holding")) && host.isRunning() && waited.elapsed() < 15000)
        QThread::msleep(5);
    ASSERT_TRUE(root.exists(QStringLiteral("testmod-holding")));

    // The stop comes while the modules load; start-up then goes on to its end.
    ::kill(pid_t(host.processId()), SIGTERM);
    QThread::msleep(50);
    ASSERT_TRUE(host.isRunning()) << "a stop while starting must not kill the host";
    root.remove(QStringLiteral("testmod-hold-start"));
    EXPECT_TRUE(host.stop()) << "the host exits by itself, with status 0";
    EXPECT_EQ(host.client().get(QString::fromLatin1(HostProcess::SmallAnswerTarget), 500).status, 0);
}
