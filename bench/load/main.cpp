// The host under the load of a busy household: 200 clients long-polling
// subscriptions, 50 event streams, and 4 clients that each edit the play
// queue (a track added at its end and removed again), rename a playlist and
// read a page of the queue in a loop, for 30 s.
// Every subscription watches the queue's rows and the list of playlists, so
// each edit fans out to all 250. Reports command and page latencies (p50,
// p99), errors, and the host's memory and file descriptors before the load,
// at its peak and after it (every client gone), beside the targets.
//
// Usage: bench_load [SECONDS]   (default: 30)

#include "BenchFigures.h"
#include "BenchHost.h"
#include "BenchTracks.h"

#include <ApiCalls.h>
#include <EventStreamReader.h>
#include <VexaJson.h>

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using namespace BenchFigures;

const int kPollers = 200;
const int kStreams = 50;
const int kEditors = 4;
const int kQueueSize = 1000;
// Clients come from many loopback addresses, as from the devices of a home,
// each address holding a handful of connections.
const int kAddresses = 50;
const double kTargetP99Ms = 25;
const double kTargetMemoryGrowth = 1.2;

QString addressOf(int client)
{
    return QStringLiteral("127.0.0.%1").arg(2 + client % kAddresses);
}

struct Sample
{
    long rssKb = 0;
    int fds = 0;
};

class LoadRun
{
public:
    explicit LoadRun(double seconds) : m_seconds(seconds) {}
    int run();

private:
    QString subscribe(const QString& from);
    void poller(int client);
    void streamer(int client);
    void editor(int client);
    const double m_seconds;
    BenchHost m_host;
    std::atomic<bool> m_stop{false};
    std::atomic<long> m_errors{0};
    std::atomic<long> m_events{0};
    std::mutex m_mutex;
    std::vector<double> m_commands;
    std::vector<double> m_pages;
    std::vector<QString> m_subscriptions;
};

QString LoadRun::subscribe(const QString& from)
{
    const ApiCalls api(HttpClient(m_host.port(), from));
    const QString id = api.subscribe({{"rows", "playlists:/queue"}, {"rows", "playlists:/lists"}});
    if (id.isEmpty()) {
        ++m_errors;
    } else {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_subscriptions.push_back(id);
    }
    return id;
}

void LoadRun::poller(int client)
{
    const QString from = addressOf(client);
    const QString id = subscribe(from);
    BenchConnection connection(m_host.port(), from);
    const QByteArray target = ApiCalls::pollTarget(id, 5).toUtf8();
    QByteArray answer;
    while (!id.isEmpty() && !m_stop) {
        if (connection.request("GET", target, QByteArray(), &answer) != 200) {
            ++m_errors;
            return;
        }
        m_events += VexaJson::parse(answer, nullptr).toList().size();
    }
}

void LoadRun::streamer(int client)
{
    const QString from = addressOf(kPollers + client);
    const QString id = subscribe(from);
    EventStreamReader stream;
    if (id.isEmpty() || !stream.open(m_host.port(), ApiCalls::streamTarget(id), 5000, from) || stream.status() != 200) {
        ++m_errors;
        return;
    }
    QByteArray data;
    while (!m_stop) {
        if (stream.readData(&data, 200))
            ++m_events;
    }
}

void LoadRun::editor(int client)
{
    const QString from = addressOf(kPollers + kStreams + client);
    BenchConnection connection(m_host.port(), from);
    const QByteArray page = "/api/v1/rows?path=playlists%3A%2Fqueue&roles=*&from=" + QByteArray::number(kQueueSize / 2)
        + "&to=" + QByteArray::number(kQueueSize / 2 + 49);
    std::vector<double> commands;
    std::vector<double> pages;
    QByteArray answer;
    for (int i = 0; !m_stop; ++i) {
        const QByteArray commandsOfOneRound[] = {
            "{\"path\":\"playlists:/add-external-items\",\"value\":{\"plid\":0,\"items\":[" + BenchTracks::item(client * 1000000 + i) + "]}}",
            // Past the queue's first kQueueSize entries there is always one
            // added by this client and not yet removed.
            "{\"path\":\"playlists:/remove-items\",\"value\":{\"plid\":0,\"items\":[" + QByteArray::number(kQueueSize) + "]}}",
            "{\"path\":\"playlists:/rename-playlist\",\"value\":{\"plid\":1,\"name\":\"Load " + QByteArray::number(i % 7) + "\"}}",
        };
        for (const QByteArray& body : commandsOfOneRound) {
            const Clock::time_point sent = Clock::now();
            const int status = connection.request("POST", "/api/v1/data", body, &answer);
            commands.push_back(msSince(sent));
            if (status != 200)
                ++m_errors;
        }
        const Clock::time_point sent = Clock::now();
        if (connection.request("GET", page, QByteArray(), &answer) != 200)
            ++m_errors;
        pages.push_back(msSince(sent));
    }
    std::lock_guard<std::mutex> lock(m_mutex);
    m_commands.insert(m_commands.end(), commands.begin(), commands.end());
    m_pages.insert(m_pages.end(), pages.begin(), pages.end());
}

int LoadRun::run()
{
    if (!m_host.start())
        return 1;
    {
        BenchConnection setup(m_host.port());
        QByteArray items;
        for (int i = 0; i < kQueueSize; ++i)
            items += (i ? "," : "") + BenchTracks::item(i);
        if (m_host.post(setup, "playlists:/add-external-items", "{\"plid\":0,\"items\":[" + items + "]}") != 200
            || m_host.post(setup, "playlists:/create-playlist", "{\"name\":\"Load\"}") != 200) {
            std::fprintf(stderr, "bench_load: the queue could not be filled\n");
            return 1;
        }
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    const Sample before{m_host.rssKb(), m_host.openFds()};

    std::vector<std::thread> clients;
    for (int c = 0; c < kPollers; ++c)
        clients.emplace_back([this, c]() { poller(c); });
    for (int c = 0; c < kStreams; ++c)
        clients.emplace_back([this, c]() { streamer(c); });
    for (int c = 0; c < kEditors; ++c)
        clients.emplace_back([this, c]() { editor(c); });
    Sample peak = before;
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(long(m_seconds * 1000));
    while (Clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        peak.rssKb = std::max(peak.rssKb, m_host.rssKb());
        peak.fds = std::max(peak.fds, m_host.openFds());
    }
    m_stop = true;
    for (std::thread& client : clients)
        client.join();
    // Every client is gone: its subscription goes with it.
    for (const QString& id : m_subscriptions)
        HttpClient(m_host.port()).request("DELETE", "/api/v1/subscriptions/" + id, QByteArray());
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    const Sample after{m_host.rssKb(), m_host.openFds()};
    m_host.stop();

    const double commandP99 = percentile(m_commands, 99);
    const double pageP99 = percentile(m_pages, 99);
    std::printf("bench_load: %d long-pollers, %d streams, %d editing clients for %.0f s\n", kPollers, kStreams, kEditors,
                m_seconds);
    std::printf("%-28s %10s %10s %10s\n", "", "p50 ms", "p99 ms", "count");
    std::printf("%-28s %10.2f %10.2f %10zu   target p99 <= %.0f ms\n", "commands", percentile(m_commands, 50), commandP99,
                m_commands.size(), kTargetP99Ms);
    std::printf("%-28s %10.2f %10.2f %10zu   target p99 <= %.0f ms\n", "pages of 50", percentile(m_pages, 50), pageP99,
                m_pages.size(), kTargetP99Ms);
    std::printf("%-28s %10ld   target 0\n", "errors", long(m_errors));
    std::printf("%-28s %10ld\n", "events delivered", long(m_events));
    std::printf("%-28s %10s %10s %10s\n", "", "before", "peak", "after");
    std::printf("%-28s %10.1f %10.1f %10.1f   after/before %.2f, target <= %.1f\n", "RSS MB", before.rssKb / 1024.0,
                peak.rssKb / 1024.0, after.rssKb / 1024.0, double(after.rssKb) / before.rssKb, kTargetMemoryGrowth);
    std::printf("%-28s %10d %10d %10d\n", "open fds", before.fds, peak.fds, after.fds);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const double seconds = argc > 1 ? std::atof(argv[1]) : 30.0;
    return LoadRun(seconds > 0 ? seconds : 30.0).run();
}
