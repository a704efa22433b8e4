// Timings of one grid overlay tile: 512 × 512 pixels (a 512-point tile at device pixel ratio 1,
// and a 256-point tile at ratio 2), at each grid level, with the label cache warm (the map
// redrawing tiles at a steady zoom scale) and cold (the first tiles after every zoom change).
//
// Each level is drawn at the smallest power-of-two zoom scale that still shows it, where its
// cells are smallest and a tile holds the most labels. After the table a summary checks the
// targets: 2 ms a tile warm, 8 ms cold.

#include "MapProjection.h"
#include "VeltorFormat.h"
#include "VeltorGridGeometry.h"
#include "VeltorGridOverlayRenderer.h"

#include "RunTimeReporter.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

struct Level
{
    int level;
    double zoomScale;
};

// 2^-18: the world 1024 points wide; 2^-13, 2^-9, 2^-5: just above the squares, subsquares and
// extended squares thresholds (0.0001, 0.0015, 0.03).
const Level levels[] = {{0, std::ldexp(1.0, -18)},
                        {1, std::ldexp(1.0, -13)},
                        {2, std::ldexp(1.0, -9)},
                        {3, std::ldexp(1.0, -5)}};

constexpr VeltorFormat preference = VeltorFormat::EightCharacters;

// The tile over London, on the map's tile grid.
MapRect tileOverLondon(double zoomScale, double points)
{
    const MapPoint london = mapPointForCoordinate({51.5074, -0.1278});
    const double size = points / zoomScale;
    return {std::floor(london.x / size) * size, std::floor(london.y / size) * size, size, size};
}

void drawTile(VeltorGridOverlayRenderer &renderer, QImage &image, const MapRect &rect,
              double zoomScale, double devicePixelRatio)
{
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setTransform(
        tileTransform(rect, zoomScale, devicePixelRatio));
    renderer.drawMapRect(rect, zoomScale, painter, preference);
}

void gridTile(benchmark::State &state, Level level, double devicePixelRatio, bool warm)
{
    const double zoomScale = level.zoomScale;
    if (VeltorGrid::gridLevel(zoomScale, preference) != level.level) {
        state.SkipWithError("zoom scale does not give the level");
        return;
    }
    const double points = 512.0 / devicePixelRatio;
    const MapRect rect = tileOverLondon(zoomScale, points);
    QImage image(512, 512, QImage::Format_ARGB32_Premultiplied);
    VeltorGridOverlayRenderer renderer;
    drawTile(renderer, image, rect, zoomScale, devicePixelRatio); // fills the cache
    const std::size_t labels = renderer.labelCacheSize();

    for (auto _ : state) {
        if (!warm) {
            state.PauseTiming();
            renderer.clearLabelCache();
            state.ResumeTiming();
        }
        drawTile(renderer, image, rect, zoomScale, devicePixelRatio);
        benchmark::DoNotOptimize(image.constBits());
        benchmark::ClobberMemory();
    }
    state.counters["labels"] = double(labels);
    state.SetItemsProcessed(state.iterations());
}

void registerBenchmarks()
{
    for (const Level &level : levels) {
        for (const double ratio : {1.0, 2.0}) {
            for (const bool warm : {true, false}) {
                const std::string name = "grid/level" + std::to_string(level.level) + "/" +
                                         (ratio == 1.0 ? "512pt@1x" : "256pt@2x") + "/" +
                                         (warm ? "warm" : "cold");
                benchmark::RegisterBenchmark(name.c_str(), gridTile, level, ratio, warm)
                    ->Unit(benchmark::kMicrosecond);
            }
        }
    }
}

class SummaryReporter : public RunTimeReporter
{
public:
    using RunTimeReporter::RunTimeReporter;

    void printSummary() const
    {
        std::map<std::string, double> milliseconds;
        for (const auto &[name, value] : seconds())
            milliseconds[name] = value * 1e3;
        if (milliseconds.empty())
            return;
        std::printf("\nGrid tile, CPU time per 512 x 512 pixel tile:\n");
        for (const auto &[name, ms] : milliseconds) {
            const bool warm = name.size() >= 4 && name.compare(name.size() - 4, 4, "warm") == 0;
            const double goal = warm ? 2.0 : 8.0;
            std::printf("  %-28s %7.3f ms   (goal <= %.0f ms: %s)\n", name.c_str(), ms, goal,
                        ms <= goal ? "met" : "MISSED");
        }
        std::fflush(stdout);
    }

};

} // namespace

int main(int argc, char **argv)
{
    // Fonts need the GUI application; no display is needed to paint into images.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    registerBenchmarks();

    runAndSummarize<SummaryReporter>();
    benchmark::Shutdown();
    return 0;
}
