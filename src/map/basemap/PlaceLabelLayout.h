#pragma once

#include "MapPalette.h"
#include "MapProjection.h"
#include "PlaceIndex.h"

#include <QFont>
#include <QImage>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

class QPainter;
class VeltorGridOverlayRenderer;

// A place's name where it is shown: a dot on the place and the text beside it.
struct PlaceLabel
{
    std::uint32_t place = 0; // in the PlaceIndex
    bool textOnLeft = false;
    MapPoint anchor; // the dot
    MapRect box;     // dot, text, halo and the room kept around them, in map points
    // Big enough to stand over the locator grid's labels (PlaceLabelLayout::standsOverGrid).
    bool overGrid = false;
};

// Which places are named at a zoom scale, and where. The choice is made for a whole zoom level at
// once, biggest place first (a capital counts four times its size): a name goes right of its
// dot, else left, else not at all when every side meets a name already placed or, for a place
// too small to stand over the grid, a label plate of the locator grid (as the grid draws it at
// 8 characters, the finest). Big places are drawn over the grid, the rest under it, so a city
// is named where a village would give way to the grid's label. So every tile that a
// name reaches draws it at the same spot, in full, and once. Levels are worked out lazily, only
// around the tiles asked for; between whole levels the names keep their screen size and the
// layout of the level below, and one that then meets a plate is left out.
//
// Every function may run on any number of threads at once: the shared state (levels worked out,
// names painted) sits behind mutexes or is written once per entry with the same value by whoever
// gets there first.
class PlaceLabelLayout
{
public:
    // places: null for the embedded index, loaded at first use. grid: the locator grid whose
    // label font the plates are measured with; construct on the GUI thread, like the grid.
    PlaceLabelLayout(std::shared_ptr<const PlaceIndex> places,
                     const VeltorGridOverlayRenderer &grid);
    ~PlaceLabelLayout();
    PlaceLabelLayout(const PlaceLabelLayout &) = delete;
    PlaceLabelLayout &operator=(const PlaceLabelLayout &) = delete;

    // The layout over the embedded places and the map's grid; the first call belongs on the GUI
    // thread.
    static std::shared_ptr<const PlaceLabelLayout> shared();

    // The whole zoom level whose layout serves a zoom scale: the one at or below it.
    static int zoomLevelFor(double zoomScale);

    // Which names a drawing takes: those under the grid, those over it, or every one.
    enum class Layer
    {
        UnderGrid,
        OverGrid,
        All
    };

    // Whether a place's name goes over the grid's labels at a whole zoom level: from 50,000
    // people at level 11, twice that a level out, half a level in.
    static bool standsOverGrid(const PlaceIndex::Place &place, int zoomLevel);

    // Measures the names and sorts the candidates of a zoom scale's level ahead of the first
    // drawing there, which then need not wait for them.
    void prepare(double zoomScale) const;

    // Every name shown at the zoom scale whose box meets the rectangle, biggest place first.
    std::vector<PlaceLabel> labelsIn(const MapRect &rect, double zoomScale) const;

    // The plates of the grid's labels, as the grid places them at the zoom scale, whose text the
    // box meets: what a name over the grid must cover to be read. A plate whose margin alone
    // meets it stays, its label whole beside the name.
    std::vector<MapRect> gridPlatesMeeting(const MapRect &box, double zoomScale) const;

    // Draws the names of the layer whose boxes meet the rectangle. The painter maps map points
    // to device pixels by scaling and moving only (tileTransform); names go on whole device
    // pixels of the world, so neighbouring tiles join them seamlessly.
    void drawMapRect(const MapRect &rect, double zoomScale, QPainter &painter,
                     const MapPalette &palette = MapPalette::day(), Layer layer = Layer::All) const;

    // The index the names come from; loads the embedded one if that is still to come.
    const PlaceIndex &places() const;

    // For tests and benchmarks: levels worked out and kept, and bytes of painted names kept.
    static constexpr std::size_t levelCacheLimit = 6;
    static constexpr std::size_t imageCacheByteLimit = std::size_t(24) << 20;
    std::size_t cachedLevelCount() const;
    std::size_t imageCacheBytes() const;

private:
    struct Metrics;
    struct Level;
    class Evaluation;
    struct ImageKey
    {
        std::uint32_t place;
        bool textOnLeft;
        double devicePixelRatio;
        QRgb text;
        QRgb halo;

        bool operator==(const ImageKey &) const = default;
    };
    struct ImageKeyHash
    {
        std::size_t operator()(const ImageKey &key) const noexcept;
    };
    struct PaintedName
    {
        QImage image;
        QPoint anchor; // the dot's centre in the image, in pixels
    };

    const Metrics &metrics() const;
    std::shared_ptr<const Level> level(int zoomLevel) const;
    std::shared_ptr<const PaintedName> paintedName(const PlaceLabel &label, double devicePixelRatio,
                                                   const MapPalette &palette) const;

    std::shared_ptr<const PlaceIndex> m_places;
    QString m_fontFamily;
    QFont::Weight m_gridFontWeight;
    double m_gridFontSize;

    mutable std::once_flag m_metricsOnce;
    mutable std::unique_ptr<const Metrics> m_metrics;

    mutable std::mutex m_levelMutex;
    mutable std::vector<std::pair<std::uint64_t, std::shared_ptr<const Level>>> m_levels;
    mutable std::uint64_t m_levelUse = 0;

    mutable std::mutex m_imageMutex;
    mutable std::unordered_map<ImageKey, std::shared_ptr<const PaintedName>, ImageKeyHash> m_images;
    mutable std::size_t m_imageBytes = 0;
};
