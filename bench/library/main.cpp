// bench_library: the library module's store, scan and browse on a generated
// folder of tagged files, each figure beside its target with the ratio
// figure/target (below 1 meets it).
#include "Artwork.h"
#include "Browser.h"
#include "LibraryPaths.h"
#include "LibraryRoles.h"
#include "LibraryStore.h"
#include "MediaFiles.h"
#include "Scanner.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <log4cplus/configurator.h>
#include <log4cplus/logger.h>

#include <cstdio>
#include <functional>

namespace {

constexpr int TracksPerAlbum = 20;

// count files: one tone encoded once, copied and tagged anew for each file.
bool makeFolder(const QString& dir, int count)
{
    const QString tone = dir + QStringLiteral("/tone.flac");
    if (!MediaFiles::writeTone(tone, 1000))
        return false;
    for (int i = 0; i < count; ++i) {
        const int album = i / TracksPerAlbum;
        const QString folder = QStringLiteral("%1/Artist %2/Album %3").arg(dir).arg(album % 50).arg(album);
        QDir().mkpath(folder);
        const QString file = QStringLiteral("%1/%2.flac").arg(folder).arg(i % TracksPerAlbum + 1, 2, 10, QLatin1Char('0'));
        if (!QFile::copy(tone, file)
            || !MediaFiles::tag(file, {{"TITLE", QStringLiteral("Track %1").arg(i)},
                                       {"ARTIST", QStringLiteral("Artist %1").arg(album % 50)},
                                       {"ALBUM", QStringLiteral("Album %1").arg(album)},
                                       {"GENRE", QStringLiteral("Genre %1").arg(album % 7)},
                                       {"TRACKNUMBER", QString::number(i % TracksPerAlbum + 1)}}))
            return false;
    }
    return QFile::remove(tone);
}

// Milliseconds per run of fn, the best of a few rounds.
double msPerRun(int runs, const std::function<void()>& fn)
{
    double best = 1e9;
    for (int round = 0; round < 5; ++round) {
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < runs; ++i)
            fn();
        best = qMin(best, timer.nsecsElapsed() / 1e6 / runs);
    }
    return best;
}

void print(const char* what, double figure, const char* unit, double target, bool higherIsBetter)
{
    const double ratio = higherIsBetter ? target / figure : figure / target;
    std::printf("%-36s %10.3f %-7s target %8.3f %-7s ratio %.2f\n", what, figure, unit, target, unit, ratio);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    log4cplus::BasicConfigurator logs;
    logs.configure();
    log4cplus::Logger::getRoot().setLogLevel(log4cplus::WARN_LOG_LEVEL);
    const int files = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 2000;
    QTemporaryDir work;
    const QString music = work.filePath(QStringLiteral("music"));
    QDir().mkpath(music);
    std::printf("Generating %d tagged files...\n", files);
    if (!makeFolder(music, files)) {
        std::fprintf(stderr, "could not generate the folder\n");
        return 1;
    }
    LibraryStore store;
    if (!store.open(work.filePath(QStringLiteral("library.sqlite"))))
        return 1;
    Artwork artwork(work.filePath(QStringLiteral("public")));
    Scanner scanner(&store, &artwork);

    QElapsedTimer timer;
    timer.start();
    scanner.start(music);
    scanner.runToEnd();
    const double fullSeconds = timer.nsecsElapsed() / 1e9;
    timer.restart();
    scanner.start(music);
    scanner.runToEnd();
    const double rescanSeconds = timer.nsecsElapsed() / 1e9;

    Browser browser(&store, scanner.root());
    const Browser::Listing tracks = *browser.listingOf(LibraryPaths::at(QStringLiteral("/tracks")));
    const double pageMs = msPerRun(200, [&]() {
        browser.count(tracks);
        for (const LibraryEntry& entry : browser.page(tracks, 1000, 1049))
            LibraryRoles::rowOf(entry);
    });
    const double searchMs = msPerRun(20, [&]() {
        const Browser::Listing found = *browser.listingOf(LibraryPaths::search().withParam(LibraryPaths::Query, QStringLiteral("track 19")));
        browser.count(found);
        browser.page(found, 0, 49);
    });
    const QString album = LibraryPaths::of(EntryKind::Album, store.list(ListKind::Albums, QVariant(), 0, 1).first().id).toEncoded();
    const double prepareMs = msPerRun(50, [&]() {
        for (const LibraryEntry& track : browser.tracksOf({album}))
            LibraryRoles::itemOf(track);
    });

    std::printf("%d files, %d tracks, %d skipped\n", files, store.trackCount(), store.unreadableCount());
    print("full scan", files / fullSeconds, "files/s", 300, true);
    print("rescan, nothing changed", rescanSeconds, "s", 0.5, false);
    print("page of 50 of all tracks at 1,000", pageMs, "ms", 1, false);
    print("search \"track 19\"", searchMs, "ms", 10, false);
    print("prepare-items of a 20-track album", prepareMs, "ms", 5, false);
    return 0;
}
