// The map as a phone shows it: a viewport of 390 × 844 points at device pixel ratio 3
// (1170 × 2532 pixels), basemap and locator grid, tiles drawn on the worker pools as in the app.
//
// first_frame/*: wall time from a cold start (empty tile caches, empty label cache) until every
// tile of the view is there, at a few places and zooms. Goal: 150 ms on 2 cores.
// long_pan: a pan of many screens across the world, waiting for each view to be drawn; reports
// the bytes both tile caches hold at most against their bound, and the process's memory.

#include "MapProjection.h"
#include "MapTileLayer.h"
#include "OfflineBasemapSource.h"
#include "RenderedTileSource.h"
#include "VeltorGridOverlayRenderer.h"

#include "RunTimeReporter.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>

namespace {

constexpr double viewWidth = 390.0;
constexpr double viewHeight = 844.0;
constexpr double devicePixelRatio = 3.0;

VeltorGridOverlayRenderer *gridRenderer = nullptr; // made in main, on the GUI thread

struct Layers
{
    Layers()
        : base(createOfflineBasemapSource(), true),
          grid(std::make_unique<RenderedTileSource>([](const TileKey &key, double ratio) {
                   return gridRenderer->renderTile(key.rect(), key.zoomScale, ratio,
                                                   VeltorFormat::SixCharacters);
               }),
               false)
    {
    }

    // Shows the view centred on a map point and waits until both layers have every tile.
    void show(MapPoint center, double zoomScale)
    {
        const MapRect visible{center.x - viewWidth / zoomScale / 2,
                              center.y - viewHeight / zoomScale / 2, viewWidth / zoomScale,
                              viewHeight / zoomScale};
        base.update(visible, zoomScale, devicePixelRatio, true);
        grid.update(visible, zoomScale, devicePixelRatio, true);
        while (!base.isComplete() || !grid.isComplete())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    MapTileLayer base;
    MapTileLayer grid;
};

struct Place
{
    const char *name;
    double latitude;
    double longitude;
    double level;
};

const Place places[] = {
    {"seattle_z11", 47.620496, -122.34927, 11.0},   // six-character cells
    {"aegean_z8", 37.5, 25.0, 8.0},                 // islands and squares
    {"europe_z5", 50.0, 10.0, 5.0},                 // many borders, fields
    {"antimeridian_z3", 0.0, 180.0, 3.0},           // two world copies
    {"fraction_z12_4", 60.39, 5.32, 12.4},          // Norway's coast at a settled fraction
};

void firstFrame(benchmark::State &state, const Place &place)
{
    const MapPoint center = mapPointForCoordinate({place.latitude, place.longitude});
    const double zoomScale = std::exp2(place.level - 20.0);
    for (auto _ : state) {
        gridRenderer->clearLabelCache();
        Layers layers;
        QElapsedTimer clock;
        clock.start();
        layers.show(center, zoomScale);
        state.SetIterationTime(double(clock.nsecsElapsed()) * 1e-9);
    }
}

// Kilobytes of a field of /proc/self/status, e.g. "VmRSS".
double statusKiB(const char *field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0.0;
    const QByteArray prefix = QByteArray(field) + ':';
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith(prefix))
            return line.mid(prefix.size()).trimmed().split(' ').value(0).toDouble();
    return 0.0;
}

void longPan(benchmark::State &state)
{
    const auto steps = int(state.range(0));
    const double zoomScale = std::exp2(12.0 - 20.0);
    qint64 mostBytes = 0;
    for (auto _ : state) {
        Layers layers;
        for (int step = 0; step < steps; ++step) {
            // Half a screen east each step, wandering north and south.
            const double x = std::fmod(mapWorldWidth * 0.3 + step * viewWidth * 0.5 / zoomScale,
                                       mapWorldWidth);
            const double y = mapWorldHeight * (0.35 + 0.1 * std::sin(step * 0.05));
            layers.show({x, y}, zoomScale);
            mostBytes = std::max(mostBytes, layers.base.cache().bytes() + layers.grid.cache().bytes());
        }
    }
    const qint64 bound = 2 * MapTileLayer::defaultCacheBytes();
    state.counters["cache_MiB"] = double(mostBytes) / (1 << 20);
    state.counters["bound_MiB"] = double(bound) / (1 << 20);
    state.counters["labels"] = double(gridRenderer->labelCacheSize());
    state.counters["rss_MiB"] = statusKiB("VmRSS") / 1024.0;
    state.counters["peak_rss_MiB"] = statusKiB("VmHWM") / 1024.0;
    if (mostBytes > bound)
        state.SkipWithError("the tile caches grew past their bound");
}

class SummaryReporter : public RunTimeReporter
{
public:
    using RunTimeReporter::RunTimeReporter;

    void ReportRuns(const std::vector<Run> &runs) override
    {
        RunTimeReporter::ReportRuns(runs);
        for (const Run &run : runs)
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                m_medians[run.run_name.function_name] =
                    run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e3;
    }

    void printSummary() const
    {
        if (m_medians.empty())
            return;
        std::printf("\nFirst full frame, 1170 x 2532 px, basemap + grid, median wall time:\n");
        for (const auto &[name, ms] : m_medians)
            std::printf("  %-36s %7.1f ms   (goal <= 150 ms: %s)\n", name.c_str(), ms,
                        ms <= 150.0 ? "met" : "MISSED");
        std::fflush(stdout);
    }

private:
    std::map<std::string, double> m_medians;
};

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    VeltorGridOverlayRenderer renderer;
    gridRenderer = &renderer;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    for (const Place &place : places)
        benchmark::RegisterBenchmark(("first_frame/" + std::string(place.name)).c_str(), firstFrame,
                                     place)
            ->Unit(benchmark::kMillisecond)
            ->UseManualTime()
            ->Iterations(1)
            ->Repetitions(9)
            ->ReportAggregatesOnly(true);
    benchmark::RegisterBenchmark("long_pan", longPan)
        ->Arg(600)
        ->Unit(benchmark::kSecond)
        ->Iterations(1)
        ->UseRealTime();

    runAndSummarize<SummaryReporter>();
    benchmark::Shutdown();
    return 0;
}
