// Times the playlist store on a playlist of 10,000 entries, each operation
// beside its floor: the same work with plain SQLite statements on the same
// schema. Both stores live in one temporary directory and open with the
// module's settings, so commits cost the same on both sides.

#include "Database.h"
#include "FloorStore.h"
#include "SummaryReporter.h"

#include <benchmark/benchmark.h>
#include <log4cplus/consoleappender.h>
#include <log4cplus/logger.h>

#include <QDir>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

namespace {

const int kEntries = 10000;
const int kFloorPlayList = 1;
const int kFloorScratch = 2;
const QString kStoreFile = QStringLiteral("data-rw/playlists/playlists.sqlite");

QList<VexaPlayListItem> makeItems(int count, const QString& prefix)
{
    QList<VexaPlayListItem> items;
    for (int i = 0; i < count; ++i) {
        const QString title = prefix + QString::number(i);
        VexaPlayListItem item;
        item.setTitle(title);
        item.setArtist(QStringLiteral("Some Artist"));
        item.setAlbum(QStringLiteral("Some Album"));
        item.setArtworkUrl(QStringLiteral("http://artwork.example/") + title + QStringLiteral(".jpg"));
        item.setGenre(QStringLiteral("Jazz"));
        item.setDurationSeconds(180 + i % 120);
        item.setUrl(QStringLiteral("http://media.example/tracks/") + title + QStringLiteral(".flac"));
        item.setServiceId(QStringLiteral("library"));
        item.setVexaRoles(QStringLiteral("{\"title\":\"") + title
                          + QStringLiteral("\",\"type\":\"audio\",\"mediaData\":{\"metaData\":{\"artist\":\"Some "
                                           "Artist\"},\"resources\":[{\"uri\":\"http://media.example/tracks/")
                          + title + QStringLiteral(".flac\",\"duration\":200}]}}"));
        items.append(item);
    }
    return items;
}

// Everything the benchmarks work on, made once before they run.
struct Stores
{
    QTemporaryDir dir;
    std::unique_ptr<Database> db;
    PlayListRecord playList;
    // Empty between runs of the timed add.
    PlayListRecord scratch;
    // Plain connection to the module's file, to undo a timed change unseen.
    std::unique_ptr<FloorStore> moduleFile;
    std::unique_ptr<FloorStore> floor;
    QList<VexaPlayListItem> items10000 = makeItems(kEntries, QStringLiteral("add"));
    QList<VexaPlayListItem> items100 = makeItems(100, QStringLiteral("mid"));
    QList<VexaPlayListItem> items10 = makeItems(10, QStringLiteral("back"));

    Stores()
    {
        QDir::setCurrent(dir.path());
        db = std::make_unique<Database>(0, false);
        playList = db->createPlayList(QStringLiteral("bench"));
        int added = 0;
        db->addItems(playList, VexaPlayListAddPosition::Append, makeItems(kEntries, QStringLiteral("t")), &added);
        playList.size = kEntries;
        scratch = db->createPlayList(QStringLiteral("scratch"));
        moduleFile = std::make_unique<FloorStore>(kStoreFile, QStringList());
        floor = std::make_unique<FloorStore>(QStringLiteral("floor.sqlite"), FloorStore::moduleSettings() + FloorStore::schemaOf(kStoreFile));
        floor->createPlayList(kFloorPlayList, QStringLiteral("bench"));
        floor->createPlayList(kFloorScratch, QStringLiteral("scratch"));
        floor->addItems(kFloorPlayList, 0, 0, makeItems(kEntries, QStringLiteral("t")));
    }
};

Stores* stores = nullptr;

void addAllOurs(benchmark::State& state)
{
    for (auto _ : state) {
        int added = 0;
        stores->db->addItems(stores->scratch, VexaPlayListAddPosition::Append, stores->items10000, &added);
        state.PauseTiming();
        stores->moduleFile->clearPlayList(stores->scratch.uid);
        state.ResumeTiming();
    }
}

void addAllFloor(benchmark::State& state)
{
    for (auto _ : state) {
        stores->floor->addItems(kFloorScratch, 0, 0, stores->items10000);
        state.PauseTiming();
        stores->floor->clearPlayList(kFloorScratch);
        state.ResumeTiming();
    }
}

void insertMiddleOurs(benchmark::State& state)
{
    PlayListRecord record = stores->playList;
    record.lastPlayedIndex = kEntries / 2 - 1;
    for (auto _ : state) {
        int added = 0;
        stores->db->addItems(record, VexaPlayListAddPosition::Next, stores->items100, &added);
        state.PauseTiming();
        stores->moduleFile->removeRange(record.uid, kEntries / 2, 100, kEntries + 100);
        state.ResumeTiming();
    }
}

void insertMiddleFloor(benchmark::State& state)
{
    for (auto _ : state) {
        stores->floor->addItems(kFloorPlayList, kEntries / 2, kEntries, stores->items100);
        state.PauseTiming();
        stores->floor->removeRange(kFloorPlayList, kEntries / 2, 100, kEntries + 100);
        state.ResumeTiming();
    }
}

void moveOurs(benchmark::State& state)
{
    for (auto _ : state) {
        stores->db->moveItem(stores->playList, 0, kEntries - 1);
        stores->db->moveItem(stores->playList, kEntries - 1, 0);
    }
}

void moveFloor(benchmark::State& state)
{
    for (auto _ : state) {
        stores->floor->moveItem(kFloorPlayList, 0, kEntries - 1, kEntries);
        stores->floor->moveItem(kFloorPlayList, kEntries - 1, 0, kEntries);
    }
}

void removeOurs(benchmark::State& state)
{
    const QList<int> indices = {10, 11, 12, 13, 14, 15, 16, 17, 18, 19};
    for (auto _ : state) {
        stores->db->removeItems(stores->playList, indices);
        state.PauseTiming();
        stores->moduleFile->addItems(stores->playList.uid, 10, kEntries - 10, stores->items10);
        state.ResumeTiming();
    }
}

void removeFloor(benchmark::State& state)
{
    for (auto _ : state) {
        stores->floor->removeRange(kFloorPlayList, 10, 10, kEntries);
        state.PauseTiming();
        stores->floor->addItems(kFloorPlayList, 10, kEntries - 10, stores->items10);
        state.ResumeTiming();
    }
}

void readOurs(benchmark::State& state)
{
    for (auto _ : state) {
        QList<VexaPlayListItem> items = stores->db->getItems(stores->playList, 5000, 5049);
        benchmark::DoNotOptimize(items);
    }
}

void readFloor(benchmark::State& state)
{
    for (auto _ : state) {
        QList<VexaPlayListItem> items = stores->floor->readItems(kFloorPlayList, 5000, 5049);
        benchmark::DoNotOptimize(items);
    }
}

void registerPair(const char* operation, void (*ours)(benchmark::State&), void (*floor)(benchmark::State&),
                  int iterations)
{
    for (auto side : {std::make_pair("ours", ours), std::make_pair("floor", floor)}) {
        auto* bench = benchmark::RegisterBenchmark((std::string(operation) + "/" + side.first).c_str(), side.second);
        bench->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(3)->ReportAggregatesOnly(true);
        if (iterations > 0)
            bench->Iterations(iterations);
        else
            bench->MinTime(0.1);
    }
}

} // namespace

int main(int argc, char** argv)
{
    // Only problems are worth printing while timing.
    log4cplus::Logger root = log4cplus::Logger::getRoot();
    root.setLogLevel(log4cplus::WARN_LOG_LEVEL);
    root.addAppender(log4cplus::SharedAppenderPtr(new log4cplus::ConsoleAppender(true)));

    benchmark::Initialize(&argc, argv);
    Stores setUp;
    stores = &setUp;

    registerPair("add 10000 items (one addItems)", addAllOurs, addAllFloor, 3);
    registerPair("add 100 at position 1 (middle)", insertMiddleOurs, insertMiddleFloor, 10);
    registerPair("move first to end and back", moveOurs, moveFloor, 8);
    registerPair("remove 10 near the front", removeOurs, removeFloor, 6);
    registerPair("read 50 at offset 5000", readOurs, readFloor, 0);

    SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printSummary();

    // Each timed change was undone, so both playlists must be as they started.
    std::printf("\nafter the run: ours %s; floor %s\n", qPrintable(setUp.moduleFile->describe(setUp.playList.uid)),
                qPrintable(setUp.floor->describe(kFloorPlayList)));
    benchmark::Shutdown();
    return 0;
}
