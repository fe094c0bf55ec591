// Times the GStreamer player as a user feels it: from a play control to the
// first buffer reaching the sink, from next to the new track's first buffer
// (a pad probe on the sink watches), and the CPU the process takes while a
// FLAC file plays in real time (percent of one core, from getrusage). The
// player runs in this process with fakesink, driven by the test module's
// play logic on a worker thread of its own, as a module's would be.

#include "BenchFigures.h"
#include "GstPlayer.h"
#include "MediaFiles.h"
#include "RecordingPlayLogic.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

namespace {

using namespace BenchFigures;

constexpr int kRounds = 7;
constexpr double kTargetMs = 50.0;
constexpr double kTargetCpuPercent = 5.0;
constexpr int kCpuSeconds = 4;

// The moment the sink saw its first buffer since armed.
std::atomic<Clock::rep> g_firstBuffer{0};
std::atomic<bool> g_armed{false};

GstPadProbeReturn onBuffer(GstPad*, GstPadProbeInfo*, gpointer)
{
    if (g_armed.exchange(false))
        g_firstBuffer = Clock::now().time_since_epoch().count();
    return GST_PAD_PROBE_OK;
}

// Milliseconds from now until the armed probe fires after action; -1 after 5 s.
template <typename Action>
double timeToFirstBuffer(Action action)
{
    g_firstBuffer = 0;
    g_armed = true;
    const Clock::time_point start = Clock::now();
    action();
    while (g_firstBuffer == 0) {
        if (Clock::now() - start > std::chrono::seconds(5))
            return -1;
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    return std::chrono::duration<double, std::milli>(Clock::duration(g_firstBuffer.load()) - start.time_since_epoch()).count();
}

double cpuSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

VexaRoles track(const QString& title, const QString& path)
{
    const QVariantHash resource{{"uri", MediaFiles::uriOf(path)}};
    return VexaRoles({{"title", title}, {"type", "audio"}, {"mediaData", QVariantHash{{"resources", QVariantList{resource}}}}});
}

void report(const char* what, double value, double target, const char* unit)
{
    std::printf("%-34s %8.2f %-3s target %6.1f %-3s ratio %.2f\n", what, value, unit, target, unit, value / target);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString one = dir.filePath("one.flac");
    const QString two = dir.filePath("two.flac");
    if (!MediaFiles::writeTone(one, 60000) || !MediaFiles::writeTone(two, 60000, 660)) {
        std::fprintf(stderr, "bench_player: GStreamer could not make the tones\n");
        return 1;
    }

    GstPlayer player(QStringLiteral("fakesink sync=true"));
    PlayLogicInterface::setPlayerInstance(&player);
    PlayLogicThread logic(QStringLiteral("benchplay"));
    GstElement* sink = player.audioSink();
    GstPad* pad = sink ? gst_element_get_static_pad(sink, "sink") : nullptr;
    if (!pad) {
        std::fprintf(stderr, "bench_player: no sink to watch\n");
        return 1;
    }
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, onBuffer, nullptr, nullptr);

    const QVariantHash meta{{"playLogicPath", QStringLiteral("benchplay:/playlogic")}};
    const VexaRoles album({{"title", "Bench"}, {"type", "container"}, {"mediaData", QVariantHash{{"metaData", meta}}},
                           {TestPlayLogic::Tracks(), QVariantList{track("One", one).toVariant(), track("Two", two).toVariant()}}});
    std::vector<double> toPlay;
    std::vector<double> toNext;
    for (int round = 0; round < kRounds; ++round) {
        toPlay.push_back(timeToFirstBuffer([&]() { player.startContainer(album, VexaRoles(), 0, 0, false, CMReply<QVariant>()); }));
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        toNext.push_back(timeToFirstBuffer([&]() { player.sendCommand(VexaPlayLogicCommand::Next, CMReply<QVariant>()); }));
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        player.stop(VexaPlayLogicStopReason::Stopped);
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    if (*std::min_element(toPlay.begin(), toPlay.end()) < 0 || *std::min_element(toNext.begin(), toNext.end()) < 0) {
        std::fprintf(stderr, "bench_player: a track never reached the sink\n");
        return 1;
    }

    player.startContainer(album, VexaRoles(), 0, 0, false, CMReply<QVariant>());
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    const double cpuBefore = cpuSeconds();
    const Clock::time_point wallBefore = Clock::now();
    std::this_thread::sleep_for(std::chrono::seconds(kCpuSeconds));
    const double cpuPercent =
        100.0 * (cpuSeconds() - cpuBefore) / std::chrono::duration<double>(Clock::now() - wallBefore).count();
    player.stop(VexaPlayLogicStopReason::Stopped);

    std::printf("GStreamer player into fakesink, medians of %d rounds\n", kRounds);
    report("play control to first buffer", median(toPlay), kTargetMs, "ms");
    report("next to the new track's buffer", median(toNext), kTargetMs, "ms");
    report("CPU playing FLAC (one core)", cpuPercent, kTargetCpuPercent, "%");
    gst_object_unref(pad);
    gst_object_unref(sink);
    PlayLogicInterface::setPlayerInstance(nullptr);
    return 0;
}
