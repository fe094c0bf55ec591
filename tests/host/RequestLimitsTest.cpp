#include "ApiCalls.h"
#include "HostProcess.h"
#include "HttpServer.h"

#include <QStringList>
#include <QThread>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

QString roleNames(int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names.append(QStringLiteral("role%1").arg(i));
    return names.join(QLatin1Char(','));
}

// A request from one loopback address; its status, 0 when the connection was
// closed without an answer.
int statusFrom(const QString& from, quint16 port)
{
    return HttpClient(port, from).get(QString::fromLatin1(HostProcess::SmallAnswerTarget), 5000).status;
}

} // namespace

TEST(RequestLimits, RolesAndCellsOfAPageAreBoundedWithA400NamingTheLimit)
{
    HostProcess host;
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();
    const ApiCalls api(host.client());

    EXPECT_EQ(api.rows("testmod:/items", roleNames(64)).status, 200);
    const HttpReply roles = api.rows("testmod:/items", roleNames(65));
    EXPECT_EQ(roles.status, 400);
    EXPECT_EQ(roles.errorName(), "tooManyRoles");
    EXPECT_TRUE(roles.errorMessage().contains("64")) << roles.body.constData();
    EXPECT_EQ(api.data("testmod:/items", roleNames(65)).errorName(), "tooManyRoles");

    // A role named again is asked for, counted and answered once.
    const HttpReply repeated = api.rows("testmod:/items", QStringLiteral("title,").repeated(200), 0, 1);
    ASSERT_EQ(repeated.status, 200) << repeated.body.constData();
    EXPECT_EQ(repeated.json().toHash().value("rows").toList().value(0), QVariantList{"Item 0"});

    // Cells are the rows asked for times the roles, "*" weighing as every role.
    EXPECT_EQ(api.rows("testmod:/items", "title,path,type", 0, 9999).status, 200);
    const HttpReply cells = api.rows("testmod:/items", roleNames(11), 0, 9999);
    EXPECT_EQ(cells.status, 400);
    EXPECT_EQ(cells.errorName(), "tooManyCells");
    EXPECT_TRUE(cells.errorMessage().contains("100000")) << cells.body.constData();
    EXPECT_EQ(api.rows("testmod:/items", "*", 0, 9999).errorName(), "tooManyCells");
    EXPECT_EQ(api.rows("testmod:/items", "*", 0, 999).status, 200);
}

TEST(RequestLimits, AnAnswerBeyondItsByteLimitIsA400)
{
    HostProcess host({HostProcess::playlistsModule()}, {"--max-body-bytes", "40000000"});
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();
    const ApiCalls api(host.client());

    // Names and settings are kept as sent; 17 MB of one no longer fits an answer.
    const QString name(17 * 1024 * 1024, QLatin1Char('n'));
    ASSERT_EQ(api.setData("playlists:/create-playlist", QVariantHash{{"name", name}}).status, 200);
    const HttpReply rows = api.rows("playlists:/lists", "title");
    EXPECT_EQ(rows.status, 400);
    EXPECT_EQ(rows.errorName(), "answerTooLarge");
    EXPECT_TRUE(rows.errorMessage().contains(QString::number(16 * 1024 * 1024))) << rows.body.left(300).constData();
    ASSERT_EQ(api.setData("settings:/big", QVariantHash{{"type", "string_"}, {"string_", name}}).status, 200);
    EXPECT_EQ(api.data("settings:/big", "value").errorName(), "answerTooLarge");
    EXPECT_EQ(api.rows("playlists:/lists", "path").status, 200) << "the same list without the name fits";
}

TEST(RequestLimits, ALongRequestTargetIsAJson414)
{
    HostProcess host;
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();
    const HttpClient client = host.client();

    const QString padding(17 * 1024, QLatin1Char('x'));
    const HttpReply tooLong = client.get(QStringLiteral("/api/v1/data?path=settings%3A%2Flanguage&pad=") + padding);
    EXPECT_EQ(tooLong.status, 414);
    EXPECT_EQ(tooLong.headers.value("content-type"), "application/json");
    EXPECT_EQ(tooLong.errorName(), "uriTooLong");
    EXPECT_EQ(client.get(QString::fromLatin1(HostProcess::SmallAnswerTarget) + QStringLiteral("&pad=")
                         + padding.left(15 * 1024))
                  .status,
              200);
}

TEST(Connections, OneAddressCannotTakeTheSlotsOfOthers)
{
    HostProcess host;
    QString error;
    ASSERT_TRUE(host.start(&error)) << error.toStdString();

    // More idle connections than one address may hold: the host's workers
    // take them in parallel, so the ones refused need not be the last, but the
    // address ends up full either way.
    std::vector<std::unique_ptr<HttpSocket>> idle;
    for (int i = 0; i < int(HttpServer::MaxConnectionsPerAddress) + 10; ++i) {
        idle.push_back(std::make_unique<HttpSocket>());
        ASSERT_TRUE(idle.back()->connectTo(QStringLiteral("127.0.0.1"), host.port(), QStringLiteral("127.0.0.1")));
    }
    // Once the host has taken all the idle connections, the address gets no more.
    QDeadlineTimer deadline(10000);
    while (statusFrom(QStringLiteral("127.0.0.1"), host.port()) != 0 && !deadline.hasExpired())
        QThread::msleep(50);
    EXPECT_EQ(statusFrom(QStringLiteral("127.0.0.1"), host.port()), 0);
    EXPECT_EQ(statusFrom(QStringLiteral("127.0.0.2"), host.port()), 200);

    idle.clear();
    deadline = QDeadlineTimer(10000);
    while (statusFrom(QStringLiteral("127.0.0.1"), host.port()) != 200 && !deadline.hasExpired())
        QThread::msleep(50);
    EXPECT_EQ(statusFrom(QStringLiteral("127.0.0.1"), host.port()), 200);
}
