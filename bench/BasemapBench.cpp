// Timings of the offline basemap: loading the embedded files, and one 512 × 512 pixel tile (256
// points at device pixel ratio 2) at every zoom level 0 to 10 over two busy places, the Aegean
// islands and the Lofoten coast of Norway; then the same tiles as the map shows them, with lakes,
// rivers and place names, there and over the Rhine-Ruhr towns, the densest names. Every iteration
// is timed on its own; the summary after the table gives the median wall time per tile and checks
// it against 5 ms (basemap load: 200 ms, place load: 100 ms, names prepared for the opening level
// as start-up does: 50 ms). A level's names are laid out on its
// first tile: "first_ms" is that tile's time.
//
// --png DIR writes sample maps (the world, Europe, the Aegean, Norway, names over the Alps and
// London) as PNG files and exits.

#include "Basemap.h"
#include "MapProjection.h"
#include "MapTile.h"
#include "PlaceIndex.h"
#include "PlaceLabelLayout.h"

#include "VeltorGridOverlayRenderer.h"

#include "RunTimeReporter.h"

#include <benchmark/benchmark.h>

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

struct Place
{
    const char *name;
    Coordinate coordinate;
};

const Place places[] = {{"aegean", {37.05, 25.35}}, {"lofoten", {68.15, 14.10}}};
const Place namedPlaces[] = {
    {"aegean", {37.05, 25.35}}, {"lofoten", {68.15, 14.10}}, {"ruhr", {51.45, 7.05}}};

constexpr double tileDevicePixelRatio = 2.0;

// Median wall milliseconds per benchmark, filled in as the benchmarks run.
std::map<std::string, double> &medians()
{
    static std::map<std::string, double> values;
    return values;
}

double median(std::vector<double> values)
{
    if (values.empty())
        return 0.0;
    std::sort(values.begin(), values.end());
    const std::size_t n = values.size();
    return n % 2 ? values[n / 2] : 0.5 * (values[n / 2 - 1] + values[n / 2]);
}

// The tile of the map's tile grid that holds the coordinate.
MapRect tileAt(Coordinate coordinate, int level)
{
    const MapPoint point = mapPointForCoordinate(coordinate);
    const double size = mapTileSizePoints / zoomScaleForLevel(level);
    return {std::floor(point.x / size) * size, std::floor(point.y / size) * size, size, size};
}

template <typename Work> void timeEach(benchmark::State &state, const std::string &name, Work work)
{
    std::vector<double> milliseconds;
    milliseconds.reserve(1024);
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const auto end = std::chrono::steady_clock::now();
        milliseconds.push_back(std::chrono::duration<double, std::milli>(end - start).count());
    }
    const double value = median(milliseconds);
    medians()[name] = value;
    state.counters["median_ms"] = value;
    if (!milliseconds.empty())
        state.counters["first_ms"] = milliseconds.front();
}

void loadBasemap(benchmark::State &state)
{
    timeEach(state, "load", [] {
        const std::shared_ptr<const Basemap> basemap = Basemap::load();
        if (!basemap)
            std::abort();
        benchmark::DoNotOptimize(basemap.get());
    });
}

void loadPlaces(benchmark::State &state)
{
    timeEach(state, "places load", [] {
        const std::shared_ptr<const PlaceIndex> index = PlaceIndex::load();
        if (!index)
            std::abort();
        benchmark::DoNotOptimize(index.get());
    });
}

// What start-up does for the names ahead of the first tiles: a fresh layout measures every name
// and sorts the candidates of the level the map opens at.
void preparePlaces(benchmark::State &state)
{
    const std::shared_ptr<const PlaceIndex> index = PlaceIndex::shared();
    if (!index) {
        state.SkipWithError("no places");
        return;
    }
    const VeltorGridOverlayRenderer grid;
    timeEach(state, "places prepare", [&] {
        const PlaceLabelLayout layout(index, grid);
        layout.prepare(zoomScaleForLevel(11));
        benchmark::DoNotOptimize(layout.cachedLevelCount());
    });
}

// A fresh layout, so the first tile of every level lays its names out as in a new process.
void namedTile(benchmark::State &state, Place place, int level, std::string name)
{
    const std::shared_ptr<const Basemap> basemap = Basemap::shared();
    const std::shared_ptr<const Basemap> water = Basemap::sharedWater();
    const std::shared_ptr<const PlaceIndex> index = PlaceIndex::shared();
    if (!basemap || !water || !index) {
        state.SkipWithError("no basemap, water or places");
        return;
    }
    const PlaceLabelLayout layout(index, VeltorGridOverlayRenderer());
    const double zoomScale = zoomScaleForLevel(level);
    const MapRect rect = tileAt(place.coordinate, level);
    timeEach(state, name, [&] {
        const QImage image = basemap->renderTile(rect, zoomScale, tileDevicePixelRatio,
                                                 MapPalette::day(), {water.get(), &layout});
        benchmark::DoNotOptimize(image.constBits());
    });
    state.counters["names"] = double(layout.labelsIn(rect, zoomScale).size());
}

void basemapTile(benchmark::State &state, Place place, int level, std::string name)
{
    const std::shared_ptr<const Basemap> basemap = Basemap::shared();
    if (!basemap) {
        state.SkipWithError("no basemap");
        return;
    }
    const double zoomScale = zoomScaleForLevel(level);
    const MapRect rect = tileAt(place.coordinate, level);
    timeEach(state, name, [&] {
        const QImage image = basemap->renderTile(rect, zoomScale, tileDevicePixelRatio);
        benchmark::DoNotOptimize(image.constBits());
    });
    state.counters["lod"] = basemap->levelOfDetailFor(zoomScale * tileDevicePixelRatio);
}

std::string tileName(const char *kind, const Place &place, int level)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%s/%s/level%02d", kind, place.name, level);
    return buffer;
}

void registerBenchmarks()
{
    benchmark::RegisterBenchmark("basemap/load", loadBasemap)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(20);
    for (const Place &place : places) {
        for (int level = 0; level <= 10; ++level) {
            const std::string name = tileName("basemap", place, level);
            benchmark::RegisterBenchmark(name.c_str(), basemapTile, place, level, name)
                ->Unit(benchmark::kMillisecond)
                ->MinTime(0.5);
        }
    }
    benchmark::RegisterBenchmark("places/load", loadPlaces)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(20);
    benchmark::RegisterBenchmark("places/prepare", preparePlaces)
        ->Unit(benchmark::kMillisecond)
        ->Iterations(10);
    for (const Place &place : namedPlaces) {
        for (int level = 0; level <= 10; ++level) {
            const std::string name = tileName("named", place, level);
            benchmark::RegisterBenchmark(name.c_str(), namedTile, place, level, name)
                ->Unit(benchmark::kMillisecond)
                ->MinTime(0.5);
        }
    }
}

class SummaryReporter : public RunTimeReporter
{
public:
    using RunTimeReporter::RunTimeReporter;

    void printSummary() const
    {
        if (medians().empty())
            return;
        std::printf("\nBasemap, median wall time (tiles: 512 x 512 pixels, 256 points at 2x):\n");
        for (const auto &[name, ms] : medians()) {
            const double goal = name == "load"             ? 200.0
                                : name == "places load"    ? 100.0
                                : name == "places prepare" ? 50.0
                                                           : 5.0;
            std::printf("  %-28s %8.3f ms   (goal <= %.0f ms: %s)\n", name.c_str(), ms, goal,
                        ms <= goal ? "met" : "MISSED");
        }
        std::fflush(stdout);
    }
};

// Tiles of the map's grid at one level, stitched: the seams between tiles show as they would on
// screen. With a grid renderer, the locator grid goes over each tile as the map shows it.
QImage mosaic(const Basemap &basemap, int level, double devicePixelRatio, Coordinate northWest,
              Coordinate southEast, VeltorGridOverlayRenderer *grid = nullptr,
              const BasemapOverlays &overlays = {}, const MapPalette &palette = MapPalette::day())
{
    const double zoomScale = zoomScaleForLevel(level);
    const double size = mapTileSizePoints / zoomScale;
    const MapPoint a = mapPointForCoordinate(northWest);
    const MapPoint b = mapPointForCoordinate(southEast);
    const auto column0 = std::int64_t(std::floor(a.x / size));
    const auto row0 = std::int64_t(std::floor(a.y / size));
    const auto column1 = std::int64_t(std::ceil(b.x / size));
    const auto row1 = std::int64_t(std::ceil(b.y / size));
    const int tilePixels = int(std::lround(mapTileSizePoints * devicePixelRatio));
    QImage out(int(column1 - column0) * tilePixels, int(row1 - row0) * tilePixels,
               QImage::Format_RGB32);
    QPainter painter(&out);
    for (std::int64_t row = row0; row < row1; ++row) {
        for (std::int64_t column = column0; column < column1; ++column) {
            const TileKey key{zoomScale, column, row};
            QImage tile =
                basemap.renderTile(key.rect(), zoomScale, devicePixelRatio, palette, overlays);
            tile.setDevicePixelRatio(1.0);
            const QPoint corner(int(column - column0) * tilePixels, int(row - row0) * tilePixels);
            painter.drawImage(corner, tile);
            if (grid) {
                QImage overlay = grid->renderTile(key.rect(), zoomScale, devicePixelRatio,
                                                  VeltorFormat::SixCharacters);
                overlay.setDevicePixelRatio(1.0);
                painter.drawImage(corner, overlay);
            }
        }
    }
    return out;
}

int writeSamples(const QString &directory)
{
    const std::shared_ptr<const Basemap> basemap = Basemap::shared();
    if (!basemap) {
        std::fprintf(stderr, "no basemap\n");
        return 1;
    }
    QDir().mkpath(directory);
    const auto save = [&](const QImage &image, const char *name) {
        const QString path = directory + QLatin1Char('/') + QLatin1String(name);
        if (!image.save(path)) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
            return false;
        }
        std::printf("%s: %d x %d\n", qPrintable(path), image.width(), image.height());
        return true;
    };
    const Coordinate worldNorthWest{85.0, -180.0};
    const Coordinate worldSouthEast{-85.0, 179.999};
    bool ok = true;
    ok &= save(mosaic(*basemap, 0, 2.0, worldNorthWest, worldSouthEast), "basemap-world-0.png");
    ok &= save(mosaic(*basemap, 1, 1.0, worldNorthWest, worldSouthEast), "basemap-world-1.png");
    ok &= save(mosaic(*basemap, 2, 1.0, worldNorthWest, worldSouthEast), "basemap-world-2.png");
    ok &= save(mosaic(*basemap, 5, 1.0, {62.0, -12.0}, {34.0, 36.0}), "basemap-europe-5.png");
    ok &= save(mosaic(*basemap, 8, 1.0, {39.0, 23.0}, {36.0, 27.5}), "basemap-aegean-8.png");
    ok &= save(mosaic(*basemap, 8, 2.0, {37.6, 24.5}, {36.4, 25.9}), "basemap-aegean-8-2x.png");
    ok &= save(mosaic(*basemap, 7, 1.0, {70.0, 8.0}, {62.0, 24.0}), "basemap-norway-7.png");
    VeltorGridOverlayRenderer grid;
    ok &= save(mosaic(*basemap, 6, 2.0, {49.0, 3.0}, {45.0, 12.0}, &grid),
               "basemap-grid-alps-6-2x.png");
    ok &= save(mosaic(*basemap, 9, 2.0, {38.0, 24.2}, {37.3, 25.5}, &grid),
               "basemap-grid-cyclades-9-2x.png");
    ok &= save(mosaic(*basemap, 10, 2.0, {68.35, 13.6}, {68.0, 14.6}), "basemap-lofoten-10-2x.png");
    const std::shared_ptr<const Basemap> water = Basemap::sharedWater();
    const std::shared_ptr<const PlaceLabelLayout> names = PlaceLabelLayout::shared();
    const BasemapOverlays shown{water.get(), names.get()};
    ok &= save(mosaic(*basemap, 3, 1.0, {72.0, -25.0}, {30.0, 45.0}, &grid, shown),
               "names-europe-3.png");
    ok &= save(mosaic(*basemap, 5, 1.0, {56.0, -6.0}, {42.0, 20.0}, &grid, shown),
               "names-europe-5.png");
    ok &= save(mosaic(*basemap, 7, 2.0, {48.5, 5.5}, {45.5, 11.0}, &grid, shown),
               "names-alps-7-2x.png");
    ok &= save(mosaic(*basemap, 10, 2.0, {51.7, -0.6}, {51.35, 0.3}, &grid, shown),
               "names-london-10-2x.png");
    ok &= save(mosaic(*basemap, 4, 1.0, {50.0, -100.0}, {38.0, -70.0}, &grid, shown),
               "names-great-lakes-4.png");
    VeltorGridOverlayRenderer nightGrid(false, MapPalette::night());
    ok &= save(
        mosaic(*basemap, 8, 2.0, {47.6, 7.4}, {46.9, 9.0}, &nightGrid, shown, MapPalette::night()),
        "names-zurich-8-2x-night.png");
    VeltorGridOverlayRenderer redGrid(false, MapPalette::red());
    ok &=
        save(mosaic(*basemap, 8, 2.0, {47.6, 7.4}, {46.9, 9.0}, &redGrid, shown, MapPalette::red()),
             "names-zurich-8-2x-red.png");
    for (const Place &place : places) {
        for (const int level : {3, 6, 9}) {
            const std::string name =
                "basemap-tile-" + std::string(place.name) + "-" + std::to_string(level) + ".png";
            ok &= save(basemap->renderTile(tileAt(place.coordinate, level),
                                           zoomScaleForLevel(level), tileDevicePixelRatio),
                       name.c_str());
        }
    }
    return ok ? 0 : 1;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    for (int i = 1; i + 1 < argc; ++i)
        if (std::strcmp(argv[i], "--png") == 0)
            return writeSamples(QString::fromLocal8Bit(argv[i + 1]));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    registerBenchmarks();

    runAndSummarize<SummaryReporter>();
    benchmark::Shutdown();
    return 0;
}
