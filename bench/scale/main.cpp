// Times the playlists module end to end at growing sizes: the real vexa-host
// on a temporary root, every command sent over HTTP as a client sends it,
// at 1,000, 10,000 and 100,000 entries (the item limit lifted). Beside each
// store operation stands its floor: the same work with plain SQLite
// statements on the module's own schema and settings; beside the page read,
// one setting read through the same API. Each figure is the median of three
// runs; the growth from one size to the next closes the report.
//
// Usage: bench_scale [SIZE ...]   (default: 1000 10000 100000)

#include "BenchFigures.h"
#include "BenchHost.h"
#include "BenchTracks.h"
#include "FloorStore.h"

#include <VexaJson.h>

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace BenchFigures;

const int kRuns = 3;
const int kPageRows = 50;
const double kPageSeconds = 2.0;

// The value of add-external-items: count tracks appended to plid.
QByteArray addValue(int plid, int count)
{
    QByteArray value = "{\"plid\":" + QByteArray::number(plid) + ",\"mode\":\"append\",\"items\":[";
    value.reserve(count * 420);
    for (int i = 0; i < count; ++i) {
        if (i > 0)
            value += ',';
        value += BenchTracks::item(i);
    }
    return value + "]}";
}

QList<VexaPlayListItem> floorItems(int count)
{
    QList<VexaPlayListItem> items;
    for (int i = 0; i < count; ++i) {
        VexaPlayListItem item;
        item.setVexaRoles(QString::fromUtf8(BenchTracks::roles(i)));
        item.fillFromRoles();
        items.append(item);
    }
    return items;
}

struct Row
{
    std::string work;
    double ours = 0;
    double floor = 0; // 0: no floor
};

class ScaleRun
{
public:
    explicit ScaleRun(int size) : m_size(size) {}

    bool run(std::vector<Row>* rows);

private:
    // Times one command; the run fails when it is not answered 200.
    double timed(const QByteArray& path, const QByteArray& value);
    int createPlayList(const QByteArray& name);
    bool fillFloor();
    QByteArray pageTarget(int from) const;
    // clients on their own connections reading targets for kPageSeconds: sorted latencies.
    std::vector<double> load(int clients, const std::function<QByteArray(std::mt19937&)>& next);

    const int m_size;
    BenchHost m_host{{QStringLiteral("--reply-timeout"), QStringLiteral("600000"), QStringLiteral("--max-body-bytes"),
                      QStringLiteral("1073741824")}};
    std::unique_ptr<BenchConnection> m_connection;
    bool m_failed = false;
};

double ScaleRun::timed(const QByteArray& path, const QByteArray& value)
{
    // Making a request of tens of megabytes is the client's work, not timed.
    const QByteArray message = BenchHost::postMessage(path, value);
    QByteArray answer;
    const Clock::time_point start = Clock::now();
    const int status = m_connection->send(message, &answer);
    const double ms = msSince(start);
    if (status != 200) {
        std::fprintf(stderr, "bench_scale: %s answered %d: %s\n", path.constData(), status, answer.left(300).constData());
        m_failed = true;
    }
    return ms;
}

int ScaleRun::createPlayList(const QByteArray& name)
{
    QByteArray answer;
    m_host.post(*m_connection, "playlists:/create-playlist", "{\"name\":\"" + name + "\"}", &answer);
    QString error;
    const QVariant reply = VexaJson::parse(answer, &error);
    return reply.toHash().value("result").toHash().value("value").toHash().value("i32_", -1).toInt();
}

QByteArray ScaleRun::pageTarget(int from) const
{
    return "/api/v1/rows?path=playlists%3A%2Fqueue&roles=*&from=" + QByteArray::number(from) + "&to="
        + QByteArray::number(from + kPageRows - 1);
}

std::vector<double> ScaleRun::load(int clients, const std::function<QByteArray(std::mt19937&)>& next)
{
    std::vector<std::vector<double>> latencies(clients);
    std::atomic<long> failures{0};
    const Clock::time_point end = Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(kPageSeconds));
    std::vector<std::thread> threads;
    for (int c = 0; c < clients; ++c) {
        threads.emplace_back([&, c]() {
            BenchConnection connection(m_host.port());
            std::mt19937 random(1234 + c);
            QByteArray answer;
            while (Clock::now() < end) {
                const QByteArray target = next(random);
                const Clock::time_point sent = Clock::now();
                if (connection.request("GET", target, QByteArray(), &answer) == 200)
                    latencies[c].push_back(msSince(sent));
                else
                    ++failures;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    std::vector<double> all;
    for (const auto& l : latencies)
        all.insert(all.end(), l.begin(), l.end());
    std::sort(all.begin(), all.end());
    if (failures > 0) {
        std::fprintf(stderr, "bench_scale: %ld page reads failed\n", long(failures));
        m_failed = true;
    }
    return all;
}

bool ScaleRun::run(std::vector<Row>* rows)
{
    const int n = m_size;
    const QByteArray size = QByteArray::number(n);
    if (!m_host.start())
        return false;
    m_connection = std::make_unique<BenchConnection>(m_host.port());
    // The item limit is read when the module starts.
    m_host.post(*m_connection, "settings:/playlists/itemLimit", QByteArray("{\"type\":\"i32_\",\"i32_\":0}"));
    m_host.stop();
    if (!m_host.start())
        return false;
    m_connection = std::make_unique<BenchConnection>(m_host.port());

    const QByteArray tracks = addValue(0, n).mid(QByteArray("{\"plid\":0,").size());
    const auto addTo = [&](int plid) { return timed("playlists:/add-external-items", "{\"plid\":" + QByteArray::number(plid) + ',' + tracks); };

    std::vector<double> add, merge, clear, remove10, move, del;
    std::vector<int> sources;
    for (int r = 0; r < kRuns; ++r) {
        sources.push_back(createPlayList("source " + QByteArray::number(r)));
        add.push_back(addTo(sources.back()));
    }
    for (int source : sources) {
        merge.push_back(timed("playlists:/add-items", "{\"plid\":0,\"fromPlid\":" + QByteArray::number(source) + '}'));
        clear.push_back(timed("playlists:/clear-playlist", "{\"plid\":0}"));
    }
    for (int r = 0; r < kRuns; ++r) {
        const int doomed = createPlayList("doomed");
        addTo(doomed);
        del.push_back(timed("playlists:/delete-playlist", "{\"plid\":" + QByteArray::number(doomed) + '}'));
    }
    // The queue holds n entries from here on: it is paged, edited and weighed.
    addTo(0);
    int queueSize = n;
    for (int r = 0; r < kRuns; ++r) {
        const QByteArray last = QByteArray::number(queueSize - 1);
        const Clock::time_point start = Clock::now();
        timed("playlists:/move-items", "{\"plid\":0,\"items\":[0],\"to\":" + last + '}');
        timed("playlists:/move-items", "{\"plid\":0,\"items\":[" + last + "],\"to\":0}");
        move.push_back(msSince(start));
    }
    for (int r = 0; r < kRuns; ++r) {
        remove10.push_back(timed("playlists:/remove-items", "{\"plid\":0,\"items\":[10,11,12,13,14,15,16,17,18,19]}"));
        queueSize -= 10;
    }
    // What the host frees goes back to the system within a second: the
    // figure is the memory it keeps.
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    const long rssKb = m_host.rssKb();

    const int middle = queueSize / 2;
    const auto page = [&](std::mt19937&) { return pageTarget(middle); };
    const auto setting = [](std::mt19937&) { return QByteArray(HostProcess::SmallAnswerTarget); };
    load(1, page);
    std::vector<double> page1 = load(1, page);
    std::vector<double> page8 = load(8, page);
    std::vector<double> setting1 = load(1, setting);
    std::vector<double> setting8 = load(8, setting);

    // A playlist of n entries stays stored (the queue empties at a start).
    const int kept = createPlayList("kept");
    addTo(kept);
    std::vector<double> starts;
    for (int r = 0; r < kRuns; ++r) {
        m_host.stop();
        if (!m_host.start())
            return false;
        starts.push_back(m_host.startMs());
    }
    m_connection.reset();
    m_host.stop();
    if (m_failed)
        return false;

    // The floor: the same work on a store of the module's schema.
    const QString moduleStore = m_host.rootPath() + QStringLiteral("/data-rw/playlists/playlists.sqlite");
    const QList<VexaPlayListItem> items = floorItems(n);
    FloorStore floor(m_host.rootPath() + QStringLiteral("/floor.sqlite"), FloorStore::moduleSettings() + FloorStore::schemaOf(moduleStore));
    std::vector<double> fAdd, fMerge, fClear, fDelete, fMove, fRemove, fRead;
    floor.createPlayList(1000, QStringLiteral("queue"));
    for (int r = 0; r < kRuns; ++r) {
        const int source = 1 + r;
        floor.createPlayList(source, QStringLiteral("source"));
        Clock::time_point start = Clock::now();
        floor.addItems(source, 0, 0, items);
        fAdd.push_back(msSince(start));
        start = Clock::now();
        floor.mergePlayList(source, 1000, 0);
        fMerge.push_back(msSince(start));
        start = Clock::now();
        floor.removeRange(1000, 0, n, n);
        fClear.push_back(msSince(start));
        const int doomed = 10 + r;
        floor.createPlayList(doomed, QStringLiteral("doomed"));
        floor.addItems(doomed, 0, 0, items);
        start = Clock::now();
        floor.deletePlayList(doomed);
        fDelete.push_back(msSince(start));
    }
    floor.addItems(1000, 0, 0, items);
    for (int r = 0; r < kRuns; ++r) {
        Clock::time_point start = Clock::now();
        floor.moveItem(1000, 0, n - 1, n);
        floor.moveItem(1000, n - 1, 0, n);
        fMove.push_back(msSince(start));
        start = Clock::now();
        floor.removeRange(1000, 10, 10, n - 10 * r);
        fRemove.push_back(msSince(start));
    }
    for (int r = 0; r < 200; ++r) {
        const Clock::time_point start = Clock::now();
        floor.readItems(1000, middle, middle + kPageRows - 1);
        fRead.push_back(msSince(start));
    }

    rows->push_back({"merge a playlist into the queue", median(merge), median(fMerge)});
    rows->push_back({"clear the queue", median(clear), median(fClear)});
    rows->push_back({"delete a playlist", median(del), median(fDelete)});
    rows->push_back({"add with add-external-items", median(add), median(fAdd)});
    rows->push_back({"move first to end and back", median(move), median(fMove)});
    rows->push_back({"remove 10 near the front", median(remove10), median(fRemove)});
    rows->push_back({"page of 50 mid-list p50, 1 client", percentile(page1, 50), median(fRead)});
    rows->push_back({"page of 50 mid-list p99, 8 clients", percentile(page8, 99), 0});
    rows->push_back({"  one setting p50, 1 client", percentile(setting1, 50), 0});
    rows->push_back({"  one setting p99, 8 clients", percentile(setting8, 99), 0});
    rows->push_back({"start with the playlist stored", median(starts), 0});
    rows->push_back({"RSS with the queue, MB", rssKb / 1024.0, 0});
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    std::vector<int> sizes;
    for (int i = 1; i < argc; ++i)
        sizes.push_back(std::atoi(argv[i]));
    if (sizes.empty())
        sizes = {1000, 10000, 100000};

    std::printf("bench_scale: the playlists module over HTTP, medians of %d runs (ms unless said);\n"
                "floor: the same store work with plain SQLite on the module's schema and settings\n",
                kRuns);
    std::map<int, std::vector<Row>> results;
    for (int size : sizes) {
        std::vector<Row> rows;
        ScaleRun run(size);
        if (!run.run(&rows)) {
            std::fprintf(stderr, "bench_scale: the run at %d entries failed\n", size);
            return 1;
        }
        std::printf("\n%d entries\n%-38s %12s %12s %8s\n", size, "work", "ours", "floor", "ratio");
        for (const Row& row : rows) {
            if (row.floor > 0)
                std::printf("%-38s %12.2f %12.2f %8.2f\n", row.work.c_str(), row.ours, row.floor, row.ours / row.floor);
            else
                std::printf("%-38s %12.2f %12s %8s\n", row.work.c_str(), row.ours, "", "");
        }
        std::fflush(stdout);
        results[size] = rows;
    }
    if (sizes.size() > 1) {
        std::printf("\ngrowth (ours at each size over ours at the size before)\n%-38s", "work");
        for (size_t s = 1; s < sizes.size(); ++s)
            std::printf(" %6d->%-6d", sizes[s - 1], sizes[s]);
        std::printf("\n");
        const std::vector<Row>& first = results[sizes.front()];
        for (size_t r = 0; r < first.size(); ++r) {
            std::printf("%-38s", first[r].work.c_str());
            for (size_t s = 1; s < sizes.size(); ++s) {
                const double before = results[sizes[s - 1]][r].ours;
                std::printf(" %13.2f", before > 0 ? results[sizes[s]][r].ours / before : 0.0);
            }
            std::printf("\n");
        }
    }
    return 0;
}
