// Times the module's browse tree over the host's HTTP API: the real vexa-host
// with the playlists module on a temporary root, one playlist of 10,000
// entries, clients reading pages of 50 rows at random offsets of it over
// kept-alive connections, first one client, then 8 at once. Beside each run,
// in the same run of the program, the same clients read one setting through
// GET /api/v1/data: the floor, what the HTTP layer costs when no module works.

#include "BenchConnection.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <random>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

const int kEntries = 10000;
const int kPageRows = 50;
const int kItemsPerCall = 2000;
const double kWarmUpSeconds = 0.5;
const double kRunSeconds = 3.0;

struct Figures
{
    double requestsPerSecond = 0;
    double p50Ms = 0;
    double p99Ms = 0;
    long requests = 0;
    long failures = 0;
};

quint16 freePort()
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    quint16 port = 0;
    if (::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0
        && ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &size) == 0)
        port = ntohs(address.sin_port);
    ::close(fd);
    return port;
}

QByteArray pageTarget(int from)
{
    return "/api/v1/rows?path=playlists%3A%2Ftracks%2F1&roles=*&from=" + QByteArray::number(from)
        + "&to=" + QByteArray::number(from + kPageRows - 1);
}

const QByteArray kSettingTarget = "/api/v1/data?path=settings%3A%2Fplaylists%2FitemLimit&roles=value";

bool post(BenchConnection& connection, const QByteArray& path, const QJsonObject& value)
{
    QByteArray answer;
    const QJsonObject body{{QStringLiteral("path"), QString::fromLatin1(path)}, {QStringLiteral("value"), value}};
    const int status = connection.request("POST", "/api/v1/data", QJsonDocument(body).toJson(QJsonDocument::Compact), &answer);
    if (status != 200)
        std::fprintf(stderr, "bench_http: %s answered %d: %s\n", path.constData(), status, answer.constData());
    return status == 200;
}

// One playlist (uid 1) of kEntries tracks.
bool fill(quint16 port)
{
    BenchConnection connection(port);
    if (!post(connection, "playlists:/create-playlist", {{QStringLiteral("name"), QStringLiteral("bench")}}))
        return false;
    for (int first = 0; first < kEntries; first += kItemsPerCall) {
        QJsonArray items;
        for (int i = first; i < first + kItemsPerCall; ++i) {
            const QString title = QStringLiteral("Track %1").arg(i);
            const QJsonObject resource{{QStringLiteral("uri"), QStringLiteral("http://media.example/tracks/%1.flac").arg(i)},
                                       {QStringLiteral("duration"), 180 + i % 120}};
            const QJsonObject roles{
                {QStringLiteral("title"), title},
                {QStringLiteral("type"), QStringLiteral("audio")},
                {QStringLiteral("mediaData"),
                 QJsonObject{{QStringLiteral("metaData"), QJsonObject{{QStringLiteral("artist"), QStringLiteral("Some Artist")},
                                                                       {QStringLiteral("album"), QStringLiteral("Some Album")}}},
                             {QStringLiteral("resources"), QJsonArray{resource}}}}};
            items.append(QJsonObject{
                {QStringLiteral("vexaRoles"), QString::fromUtf8(QJsonDocument(roles).toJson(QJsonDocument::Compact))}});
        }
        if (!post(connection, "playlists:/add-external-items", {{QStringLiteral("plid"), 1}, {QStringLiteral("items"), items}}))
            return false;
    }
    return true;
}

// A page must be what it claims: the rows asked for of the full playlist.
bool checkPage(quint16 port)
{
    BenchConnection connection(port);
    QByteArray answer;
    if (connection.request("GET", pageTarget(kEntries - kPageRows), QByteArray(), &answer) != 200)
        return false;
    const QJsonObject page = QJsonDocument::fromJson(answer).object();
    const QJsonArray rows = page.value(QStringLiteral("rows")).toArray();
    return page.value(QStringLiteral("rowsCount")).toInt() == kEntries && rows.size() == kPageRows
        && rows.last().toObject().value(QStringLiteral("title")).toString() == QStringLiteral("Track %1").arg(kEntries - 1);
}

// clients threads, each on its own connection, sending the targets that
// next() picks for seconds; the latency of every answered request.
Figures run(quint16 port, int clients, double seconds, const std::function<QByteArray(std::mt19937&)>& next)
{
    std::vector<std::vector<double>> latencies(clients);
    std::vector<long> failures(clients, 0);
    std::atomic<int> ready{0};
    const Clock::time_point start = Clock::now() + std::chrono::milliseconds(50);
    const Clock::time_point end = start + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    std::vector<std::thread> threads;
    for (int c = 0; c < clients; ++c) {
        threads.emplace_back([&, c]() {
            BenchConnection connection(port);
            std::mt19937 random(1234 + c);
            QByteArray answer;
            latencies[c].reserve(200000);
            ++ready;
            std::this_thread::sleep_until(start);
            while (Clock::now() < end) {
                const QByteArray target = next(random);
                const Clock::time_point sent = Clock::now();
                const int status = connection.request("GET", target, QByteArray(), &answer);
                const double ms = std::chrono::duration<double, std::milli>(Clock::now() - sent).count();
                if (status == 200)
                    latencies[c].push_back(ms);
                else
                    ++failures[c];
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    Figures figures;
    std::vector<double> all;
    for (int c = 0; c < clients; ++c) {
        all.insert(all.end(), latencies[c].begin(), latencies[c].end());
        figures.failures += failures[c];
    }
    std::sort(all.begin(), all.end());
    figures.requests = long(all.size());
    figures.requestsPerSecond = all.size() / seconds;
    if (!all.empty()) {
        figures.p50Ms = all[all.size() / 2];
        figures.p99Ms = all[std::min(all.size() - 1, all.size() * 99 / 100)];
    }
    return figures;
}

void printRow(int clients, const char* what, const Figures& f)
{
    std::printf("%7d  %-26s %10.0f %10.3f %10.3f %9ld %8ld\n", clients, what, f.requestsPerSecond, f.p50Ms, f.p99Ms,
                f.requests, f.failures);
}

void printRatio(int clients, const Figures& ours, const Figures& floor)
{
    const auto ratio = [](double a, double b) { return b > 0 ? a / b : 0.0; };
    std::printf("%7d  %-26s %10.2f %10.2f %10.2f\n", clients, "ours/floor", ratio(ours.requestsPerSecond, floor.requestsPerSecond),
                ratio(ours.p50Ms, floor.p50Ms), ratio(ours.p99Ms, floor.p99Ms));
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir root;
    QTemporaryDir modules;
    if (!root.isValid() || !modules.isValid()
        || !QFile::link(QStringLiteral(VEXA_PLAYLISTS_MODULE), modules.filePath(QStringLiteral("libvexa_playlists.so")))) {
        std::fprintf(stderr, "bench_http: cannot prepare temporary folders\n");
        return 1;
    }
    const quint16 port = freePort();
    QProcess host;
    host.setProgram(QStringLiteral(VEXA_HOST_BINARY));
    host.setArguments({QStringLiteral("--root"), root.path(), QStringLiteral("--listen"), QStringLiteral("127.0.0.1:%1").arg(port),
                       QStringLiteral("--modules"), modules.path(), QStringLiteral("--log-level"), QStringLiteral("WARN")});
    host.setStandardOutputFile(root.filePath(QStringLiteral("host.log")));
    host.setStandardErrorFile(root.filePath(QStringLiteral("host.log")));
    host.start();
    bool up = false;
    for (int i = 0; i < 200 && !up && host.state() != QProcess::NotRunning; ++i) {
        BenchConnection probe(port);
        QByteArray answer;
        up = probe.request("GET", kSettingTarget, QByteArray(), &answer) == 200;
        if (!up)
            QThread::msleep(50);
    }
    const auto stopHost = [&host]() {
        host.terminate();
        if (!host.waitForFinished(30000))
            host.kill();
    };
    if (!up || !fill(port) || !checkPage(port)) {
        std::fprintf(stderr, "bench_http: the host did not start or could not be filled\n");
        stopHost();
        return 1;
    }

    const auto page = [](std::mt19937& random) {
        return pageTarget(std::uniform_int_distribution<int>(0, kEntries - kPageRows)(random));
    };
    const auto setting = [](std::mt19937&) { return kSettingTarget; };

    std::printf("bench_http: GET /api/v1/rows of a playlist of %d entries, pages of %d rows at random offsets (roles=*),\n"
                "beside GET /api/v1/data of one setting; kept-alive connections, %.0f s a run\n\n",
                kEntries, kPageRows, kRunSeconds);
    std::printf("%7s  %-26s %10s %10s %10s %9s %8s\n", "clients", "request", "req/s", "p50 ms", "p99 ms", "requests", "failed");
    for (int clients : {1, 8}) {
        run(port, clients, kWarmUpSeconds, page);
        const Figures ours = run(port, clients, kRunSeconds, page);
        run(port, clients, kWarmUpSeconds, setting);
        const Figures floor = run(port, clients, kRunSeconds, setting);
        printRow(clients, "rows: page of 50", ours);
        printRow(clients, "data: one setting (floor)", floor);
        printRatio(clients, ours, floor);
    }
    std::fflush(stdout);
    stopHost();
    return 0;
}
