#include "PlaceLabelLayout.h"

#include "MapTile.h"
#include "VeltorFormatter.h"
#include "VeltorGridGeometry.h"
#include "VeltorGridOverlayRenderer.h"

#include <QFontMetricsF>
#include <QHash>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <functional>
#include <optional>
#include <string_view>

namespace {

// Text is measured and outlined at this pixel size and scaled: unhinted outlines and advances
// scale linearly, as for the grid's labels.
constexpr int layoutPixelSize = 100;

// Lengths in screen points.
constexpr double dotRadius = 2.0;
constexpr double capitalDotRadius = 3.0;
constexpr double textGap = 2.5;   // between the dot and the text
constexpr double haloWidth = 1.5; // around text and dot
constexpr double spacing = 2.0;   // kept clear around a name, past its halo
constexpr double boxPadding = haloWidth + spacing;
// Longer names are never shown: they would cover too much of the map.
constexpr double widestText = 220.0;
// The layout's index cells, a side.
constexpr double cellPoints = 128.0;

// Three sizes by population, each plain and bold (capitals).
constexpr int fontCount = 6;
constexpr double fontSizes[3] = {11.0, 12.5, 14.0};

int fontIndexFor(const PlaceIndex::Place &place)
{
    const int tier = place.population >= 1000000 ? 2 : place.population >= 100000 ? 1 : 0;
    return tier * 2 + (place.capital ? 1 : 0);
}

QFont layoutFont(const QString &family, QFont::Weight weight)
{
    QFont font(family);
    font.setWeight(weight);
    font.setPixelSize(layoutPixelSize);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

QFont placeFont(const QString &family, int fontIndex)
{
    return layoutFont(family, fontIndex % 2 ? QFont::Bold : QFont::Normal);
}

enum State : std::uint8_t
{
    Unknown = 0,
    Right = 1,
    Left = 2,
    Dropped = 3
};

// A box around a place's dot, in screen points.
struct Extent
{
    double x0;
    double y0;
    double x1;
    double y1;

    Extent grownBy(double d) const { return {x0 - d, y0 - d, x1 + d, y1 + d}; }
};

MapRect placedAt(MapPoint anchor, const Extent &extent, double zoomScale)
{
    return {anchor.x + extent.x0 / zoomScale, anchor.y + extent.y0 / zoomScale,
            (extent.x1 - extent.x0) / zoomScale, (extent.y1 - extent.y0) / zoomScale};
}

bool insideWorld(const MapRect &box)
{
    return box.minX() >= 0.0 && box.maxX() <= mapWorldWidth && box.minY() >= 0.0 &&
           box.maxY() <= mapWorldHeight;
}

// Below the whole world at level 0 a name would cover more than the world.
bool isUsable(const MapRect &rect, double zoomScale)
{
    return std::isfinite(rect.x) && std::isfinite(rect.y) && std::isfinite(rect.width) &&
           std::isfinite(rect.height) && !rect.isEmpty() &&
           zoomScale >= zoomScaleForLevel(mapMinZoomLevel) && std::isfinite(zoomScale);
}

} // namespace

// Text sizes of every place, measured once: advances summed character by character, which is at
// least the kerned width the text is drawn at.
struct PlaceLabelLayout::Metrics
{
    std::shared_ptr<const PlaceIndex> places;
    std::vector<float> textWidths; // screen points; 0 for a name never shown
    std::vector<std::uint8_t> fonts;
    double textHeight[fontCount] = {};
    // The farthest a name's box reaches from its dot either way, over every name.
    double reachX = 0.0;
    double reachY = 0.0;
    // The grid's label font size, and the farthest a plate reaches from its cell's centre.
    double gridFontSize = 0.0;
    double plateReachX = 0.0;
    double plateReachY = 0.0;
    // The grid font's advances and line height at the layout size, measured once: text measured
    // afresh on each drawing thread could come out otherwise, and tiles would then disagree.
    double gridAdvances[128] = {};
    double gridTextHeight = 0.0;

    // A locator's width, advances summed: at least the kerned width the grid draws it at.
    double gridTextWidth(const QString &label) const
    {
        double width = 0.0;
        for (const QChar c : label)
            width += gridAdvances[c.unicode() & 0x7f];
        return width;
    }

    bool isShown(std::size_t i) const { return textWidths[i] > 0.0f; }
    double radius(std::size_t i) const
    {
        return places->place(i).capital ? capitalDotRadius : dotRadius;
    }
    // Dot and text, without halo.
    Extent ink(std::size_t i, bool textOnLeft) const
    {
        const double r = radius(i);
        const double text = r + textGap + double(textWidths[i]);
        const double half = std::max(r, textHeight[fonts[i]] * 0.5);
        return textOnLeft ? Extent{-text, -half, r, half} : Extent{-r, -half, text, half};
    }
    Extent box(std::size_t i, bool textOnLeft) const
    {
        return ink(i, textOnLeft).grownBy(boxPadding);
    }
    // Either side.
    Extent either(std::size_t i) const
    {
        const Extent right = box(i, false);
        return {box(i, true).x0, right.y0, right.x1, right.y1};
    }
};

// One zoom level's layout: its candidates (the first places of the index) ordered by the index
// cell their dot is in, and what has been decided for each so far.
struct PlaceLabelLayout::Level
{
    int zoomLevel = 0;
    double zoomScale = 0.0;
    double cellSize = 0.0; // map points
    std::int64_t side = 0; // cells a side
    std::uint32_t count = 0;
    std::vector<std::uint32_t> byCell;
    std::unique_ptr<std::atomic<std::uint8_t>[]> states;

    std::int64_t column(double x) const
    {
        return std::clamp<std::int64_t>(std::int64_t(std::floor(x / cellSize)), 0, side - 1);
    }
    std::int64_t row(double y) const
    {
        return std::clamp<std::int64_t>(std::int64_t(std::floor(y / cellSize)), 0, side - 1);
    }
    std::int64_t cellOf(const PlaceIndex::Place &place) const
    {
        return row(place.y) * side + column(place.x);
    }
};

// The work of one call: deciding places, and every bigger one that they depend on, and measuring
// grid plates, with buffers and a formatter of its own.
class PlaceLabelLayout::Evaluation
{
public:
    Evaluation(const Metrics &metrics, const Level &level)
        : m_metrics(metrics), m_places(*metrics.places), m_level(level)
    {
    }

    // Every shown candidate whose dot lies in the area.
    template <typename Visit> void forEachDotIn(const MapRect &area, Visit visit) const
    {
        const auto inArea = [&](std::uint32_t i) {
            const PlaceIndex::Place &place = m_places.place(i);
            return place.x >= area.minX() && place.x <= area.maxX() && place.y >= area.minY() &&
                   place.y <= area.maxY();
        };
        const std::int64_t c0 = m_level.column(area.minX());
        const std::int64_t c1 = m_level.column(area.maxX());
        const std::int64_t r0 = m_level.row(area.minY());
        const std::int64_t r1 = m_level.row(area.maxY());
        // A huge area (the world at a deep level) is quicker to walk whole.
        if (double(c1 - c0 + 1) * double(r1 - r0 + 1) > double(m_level.byCell.size())) {
            for (const std::uint32_t i : m_level.byCell)
                if (inArea(i))
                    visit(i);
            return;
        }
        const auto cellBefore = [&](std::uint32_t i, std::int64_t cell) {
            return m_level.cellOf(m_places.place(i)) < cell;
        };
        for (std::int64_t r = r0; r <= r1; ++r) {
            const std::int64_t last = r * m_level.side + c1;
            auto it = std::lower_bound(m_level.byCell.begin(), m_level.byCell.end(),
                                       r * m_level.side + c0, cellBefore);
            for (; it != m_level.byCell.end() && m_level.cellOf(m_places.place(*it)) <= last; ++it)
                if (inArea(*it))
                    visit(*it);
        }
    }

    // Where the level puts a candidate's name, working it out if nobody has yet.
    State stateOf(std::uint32_t place)
    {
        if (const State state = load(place); state != Unknown)
            return state;
        m_stack.assign(1, place);
        while (!m_stack.empty()) {
            const std::uint32_t top = m_stack.back();
            if (load(top) != Unknown) {
                m_stack.pop_back();
                continue;
            }
            // Whoever decides a place first stores it; every other thread would store the same.
            if (const std::optional<State> decided = decide(top)) {
                m_level.states[top].store(*decided, std::memory_order_release);
                m_stack.pop_back();
            }
        }
        return load(place);
    }

    MapRect boxAt(std::uint32_t place, bool textOnLeft, double zoomScale) const
    {
        return placedAt(m_places.place(place).point(), m_metrics.box(place, textOnLeft), zoomScale);
    }

    // Whether a label plate of the grid, placed as the grid places it at this zoom scale, meets
    // the box.
    bool meetsGridPlate(const MapRect &box, double zoomScale)
    {
        return forEachGridPlateMeeting(box, zoomScale,
                                       [](const VeltorGrid::LabelPlacement &) { return true; });
    }

    // Visits the grid's label plates that meet the box until the visitor returns true; whether
    // it did.
    template <typename Visit>
    bool forEachGridPlateMeeting(const MapRect &box, double zoomScale, Visit visit)
    {
        constexpr VeltorFormat precision = VeltorFormat::EightCharacters;
        m_formatter.setFormat(VeltorGrid::labelFormat(zoomScale, precision));
        const double divisions = VeltorGrid::gridDivisions(zoomScale, precision);
        const MapRect reach =
            box.insetBy(-m_metrics.plateReachX / zoomScale, -m_metrics.plateReachY / zoomScale);
        const double scale = m_metrics.gridFontSize / zoomScale / layoutPixelSize;
        for (const VeltorGrid::Cell &cell :
             VeltorGrid::cells(VeltorGrid::columnLines(reach, zoomScale, divisions),
                               VeltorGrid::rowLines(reach, zoomScale, divisions), m_formatter)) {
            const MapSize text{m_metrics.gridTextWidth(cell.label) * scale,
                               m_metrics.gridTextHeight * scale};
            const VeltorGrid::LabelPlacement placement =
                VeltorGrid::placeLabel(cell.centre, text, zoomScale);
            if (placement.plateRect.intersects(box) && visit(placement))
                return true;
        }
        return false;
    }

private:
    State load(std::uint32_t place) const
    {
        return State(m_level.states[place].load(std::memory_order_acquire));
    }

    MapRect eitherBox(std::uint32_t place) const
    {
        return placedAt(m_places.place(place).point(), m_metrics.either(place), m_level.zoomScale);
    }

    // Decides a candidate once every bigger one that could touch the side being decided is
    // decided; until then stacks those and gives nothing.
    std::optional<State> decide(std::uint32_t place)
    {
        const double z = m_level.zoomScale;
        const MapRect either = eitherBox(place);
        m_neighbours.clear();
        forEachDotIn(either.insetBy(-m_metrics.reachX / z, -m_metrics.reachY / z),
                     [&](std::uint32_t other) {
                         if (other < place && eitherBox(other).intersects(either))
                             m_neighbours.push_back(other);
                     });
        // A name over the grid still takes the side that leaves the grid's labels clear, if
        // either does; the other one covers a label.
        const bool overGrid =
            PlaceLabelLayout::standsOverGrid(m_places.place(place), zoomLevelFor(z));
        std::optional<State> covering;
        for (const bool textOnLeft : {false, true}) {
            const MapRect box = boxAt(place, textOnLeft, z);
            if (!insideWorld(box))
                continue;
            // Each neighbour's state is read once: another thread may decide it meanwhile, and
            // a name read as undecided must not then be passed over as decided elsewhere.
            const std::size_t stacked = m_stack.size();
            bool blocked = false;
            for (const std::uint32_t other : m_neighbours) {
                const State state = load(other);
                if ((state == Right || state == Left) &&
                    boxAt(other, state == Left, z).intersects(box)) {
                    blocked = true;
                    break;
                }
                if (state == Unknown && eitherBox(other).intersects(box))
                    m_stack.push_back(other);
            }
            if (blocked) {
                m_stack.resize(stacked);
                continue;
            }
            if (m_stack.size() > stacked)
                return std::nullopt;
            if (!meetsGridPlate(box, z))
                return textOnLeft ? Left : Right;
            if (overGrid && !covering)
                covering = textOnLeft ? Left : Right;
        }
        return covering.value_or(Dropped);
    }

    const Metrics &m_metrics;
    const PlaceIndex &m_places;
    const Level &m_level;
    VeltorFormatter m_formatter;
    std::vector<std::uint32_t> m_stack;
    std::vector<std::uint32_t> m_neighbours;
};

PlaceLabelLayout::PlaceLabelLayout(std::shared_ptr<const PlaceIndex> places,
                                   const VeltorGridOverlayRenderer &grid)
    : m_places(std::move(places)), m_fontFamily(grid.stringAttributes().fontFamily),
      m_gridFontWeight(grid.stringAttributes().fontWeight), m_gridFontSize(grid.fontSize())
{
}

PlaceLabelLayout::~PlaceLabelLayout() = default;

std::shared_ptr<const PlaceLabelLayout> PlaceLabelLayout::shared()
{
    static const std::shared_ptr<const PlaceLabelLayout> layout =
        std::make_shared<const PlaceLabelLayout>(nullptr, VeltorGridOverlayRenderer());
    return layout;
}

int PlaceLabelLayout::zoomLevelFor(double zoomScale)
{
    if (!(zoomScale > 0.0) || !std::isfinite(zoomScale))
        return mapMinZoomLevel;
    return std::clamp(int(std::floor(zoomLevelForScale(zoomScale) + 1e-9)), mapMinZoomLevel,
                      mapMaxZoomLevel);
}

const PlaceIndex &PlaceLabelLayout::places() const
{
    return *metrics().places;
}

const PlaceLabelLayout::Metrics &PlaceLabelLayout::metrics() const
{
    std::call_once(m_metricsOnce, [this] {
        auto metrics = std::make_unique<Metrics>();
        metrics->places = m_places ? m_places : PlaceIndex::shared();
        if (!metrics->places)
            metrics->places = PlaceIndex::fromEntries({});
        const PlaceIndex &places = *metrics->places;

        // Sizes scale one measurement at layoutPixelSize, so only plain and bold are measured.
        // Most names are written in alphabets below U+0800: a table for those, a hash for CJK
        // and the rest. A negative width is one not measured yet.
        constexpr int weightCount = 2;
        constexpr char32_t tabled = 0x800;
        std::optional<QFontMetricsF> fonts[weightCount];
        std::vector<double> common[weightCount];
        QHash<char32_t, double> advances[weightCount];
        for (int w = 0; w < weightCount; ++w) {
            fonts[w].emplace(placeFont(m_fontFamily, w));
            common[w].assign(tabled, -1.0);
        }
        const auto advance = [&](int w, char32_t c) {
            if (c < tabled) {
                double &width = common[w][c];
                if (width < 0.0)
                    width = fonts[w]->horizontalAdvance(QString::fromUcs4(&c, 1));
                return width;
            }
            auto it = advances[w].find(c);
            if (it == advances[w].end())
                it = advances[w].insert(c, fonts[w]->horizontalAdvance(QString::fromUcs4(&c, 1)));
            return *it;
        };
        for (int f = 0; f < fontCount; ++f) {
            metrics->textHeight[f] =
                fonts[f % weightCount]->height() * fontSizes[f / 2] / layoutPixelSize;
            metrics->reachY = std::max(metrics->reachY, metrics->textHeight[f] * 0.5 + boxPadding);
        }
        metrics->textWidths.resize(places.size());
        metrics->fonts.resize(places.size());
        for (std::size_t i = 0; i < places.size(); ++i) {
            const int f = fontIndexFor(places.place(i));
            const QString name = places.name(i);
            double width = 0.0;
            for (qsizetype k = 0; k < name.size(); ++k) {
                char32_t c = name[k].unicode();
                if (QChar::isHighSurrogate(c) && k + 1 < name.size() &&
                    name[k + 1].isLowSurrogate()) {
                    c = QChar::surrogateToUcs4(name[k], name[k + 1]);
                    ++k;
                }
                width += advance(f % weightCount, c);
            }
            width *= fontSizes[f / 2] / layoutPixelSize;
            metrics->fonts[i] = std::uint8_t(f);
            metrics->textWidths[i] = width <= widestText ? float(width) : 0.0f;
            if (metrics->isShown(i))
                metrics->reachX = std::max(metrics->reachX, metrics->box(i, false).x1);
        }

        // Locators are letters A to X (either case) and digits, 8 at most.
        const QFontMetricsF grid(layoutFont(m_fontFamily, m_gridFontWeight));
        double widestCharacter = 0.0;
        for (const char c :
             std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXabcdefghijklmnopqrstuvwx0123456789")) {
            metrics->gridAdvances[int(c)] = grid.horizontalAdvance(QLatin1Char(c));
            widestCharacter = std::max(widestCharacter, metrics->gridAdvances[int(c)]);
        }
        metrics->gridTextHeight = grid.height();
        const double gridScale = m_gridFontSize / layoutPixelSize;
        metrics->gridFontSize = m_gridFontSize;
        // Half the text, the plate's margin, and a point for the grid's snapping.
        metrics->plateReachX =
            VeltorFormatter::maximumEncodedLength * widestCharacter * gridScale * 0.5 + 6.0 + 1.0;
        metrics->plateReachY = grid.height() * gridScale * 0.5 + 1.0;
        m_metrics = std::move(metrics);
    });
    return *m_metrics;
}

std::shared_ptr<const PlaceLabelLayout::Level> PlaceLabelLayout::level(int zoomLevel) const
{
    const Metrics &metrics = this->metrics();
    const std::lock_guard lock(m_levelMutex);
    const std::uint64_t use = ++m_levelUse;
    for (auto &[lastUse, kept] : m_levels) {
        if (kept->zoomLevel == zoomLevel) {
            lastUse = use;
            return kept;
        }
    }
    auto level = std::make_shared<Level>();
    level->zoomLevel = zoomLevel;
    level->zoomScale = zoomScaleForLevel(zoomLevel);
    level->cellSize = cellPoints / level->zoomScale;
    level->side = std::int64_t(std::ceil(mapWorldWidth / level->cellSize));
    level->count = std::uint32_t(metrics.places->candidateCount(zoomLevel));
    level->states = std::make_unique<std::atomic<std::uint8_t>[]>(level->count);
    std::vector<std::pair<std::int64_t, std::uint32_t>> cells;
    cells.reserve(level->count);
    for (std::uint32_t i = 0; i < level->count; ++i) {
        if (metrics.isShown(i))
            cells.emplace_back(level->cellOf(metrics.places->place(i)), i);
        else
            level->states[i].store(Dropped, std::memory_order_relaxed);
    }
    std::sort(cells.begin(), cells.end());
    level->byCell.reserve(cells.size());
    for (const auto &cell : cells)
        level->byCell.push_back(cell.second);

    if (m_levels.size() >= levelCacheLimit)
        m_levels.erase(
            std::min_element(m_levels.begin(), m_levels.end(),
                             [](const auto &a, const auto &b) { return a.first < b.first; }));
    m_levels.emplace_back(use, level);
    return level;
}

void PlaceLabelLayout::prepare(double zoomScale) const
{
    if (zoomScale > 0.0 && std::isfinite(zoomScale))
        level(zoomLevelFor(zoomScale));
}

std::vector<PlaceLabel> PlaceLabelLayout::labelsIn(const MapRect &rect, double zoomScale) const
{
    if (!isUsable(rect, zoomScale))
        return {};
    const Metrics &metrics = this->metrics();
    const std::shared_ptr<const Level> level = this->level(zoomLevelFor(zoomScale));
    Evaluation evaluation(metrics, *level);
    // Between whole levels boxes shrink in map points, so the level's reach covers them.
    const double z = level->zoomScale;
    std::vector<std::uint32_t> candidates;
    evaluation.forEachDotIn(rect.insetBy(-metrics.reachX / z, -metrics.reachY / z),
                            [&](std::uint32_t i) { candidates.push_back(i); });
    std::sort(candidates.begin(), candidates.end());

    const int zoomLevel = zoomLevelFor(z);
    std::vector<PlaceLabel> labels;
    for (const std::uint32_t i : candidates) {
        const State state = evaluation.stateOf(i);
        if (state != Right && state != Left)
            continue;
        const MapRect box = evaluation.boxAt(i, state == Left, zoomScale);
        const bool overGrid = standsOverGrid(metrics.places->place(i), zoomLevel);
        if (!box.intersects(rect) ||
            (zoomScale != z && !overGrid && evaluation.meetsGridPlate(box, zoomScale)))
            continue;
        labels.push_back({i, state == Left, metrics.places->place(i).point(), box, overGrid});
    }
    return labels;
}

std::vector<MapRect> PlaceLabelLayout::gridPlatesMeeting(const MapRect &box, double zoomScale) const
{
    std::vector<MapRect> plates;
    if (!isUsable(box, zoomScale))
        return plates;
    const Metrics &metrics = this->metrics();
    Evaluation evaluation(metrics, *level(zoomLevelFor(zoomScale)));
    evaluation.forEachGridPlateMeeting(box, zoomScale,
                                       [&](const VeltorGrid::LabelPlacement &placement) {
                                           if (placement.textRect.intersects(box))
                                               plates.push_back(placement.plateRect);
                                           return false;
                                       });
    return plates;
}

bool PlaceLabelLayout::standsOverGrid(const PlaceIndex::Place &place, int zoomLevel)
{
    const double people = double(place.population) * (place.capital ? 4.0 : 1.0);
    return people >= 25000.0 * std::ldexp(1.0, 12 - zoomLevel);
}

void PlaceLabelLayout::drawMapRect(const MapRect &rect, double zoomScale, QPainter &painter,
                                   const MapPalette &palette, Layer layer) const
{
    const QTransform transform = painter.transform();
    const double scale = transform.m11();
    if (transform.type() > QTransform::TxScale || !(scale > 0.0) || scale != transform.m22() ||
        !isUsable(rect, zoomScale))
        return;
    const std::vector<PlaceLabel> labels = labelsIn(rect, zoomScale);
    if (labels.empty())
        return;
    // Rounded so that tiles between whole levels find the names painted for the level.
    const double ratio = std::round(scale / zoomScale * 1e6) / 1e6;
    painter.save();
    painter.resetTransform();
    for (const PlaceLabel &label : labels) {
        if ((layer == Layer::UnderGrid && label.overGrid) ||
            (layer == Layer::OverGrid && !label.overGrid))
            continue;
        const std::shared_ptr<const PaintedName> name = paintedName(label, ratio, palette);
        if (!name)
            continue;
        // The dot on a whole pixel of the world, the same for every tile.
        const double x = std::round(label.anchor.x * scale) + transform.dx() - name->anchor.x();
        const double y = std::round(label.anchor.y * scale) + transform.dy() - name->anchor.y();
        painter.drawImage(QPointF(x, y), name->image);
    }
    painter.restore();
}

std::shared_ptr<const PlaceLabelLayout::PaintedName>
PlaceLabelLayout::paintedName(const PlaceLabel &label, double devicePixelRatio,
                              const MapPalette &palette) const
{
    const ImageKey key{label.place, label.textOnLeft, devicePixelRatio, palette.placeText.rgba(),
                       palette.placeHalo.rgba()};
    {
        const std::lock_guard lock(m_imageMutex);
        if (const auto found = m_images.find(key); found != m_images.end())
            return found->second;
    }

    // Painted outside the lock: two threads may paint the same name, and the first one is kept.
    const Metrics &metrics = this->metrics();
    const double ratio = devicePixelRatio;
    const Extent ink = metrics.ink(label.place, label.textOnLeft).grownBy(haloWidth + 1.0 / ratio);
    const double left = std::floor(ink.x0 * ratio);
    const double top = std::floor(ink.y0 * ratio);
    const double width = std::ceil(ink.x1 * ratio) - left;
    const double height = std::ceil(ink.y1 * ratio) - top;
    if (!(width >= 1.0 && height >= 1.0 && width <= 4096.0 && height <= 4096.0))
        return nullptr;
    auto name = std::make_shared<PaintedName>();
    name->image = QImage(int(width), int(height), QImage::Format_ARGB32_Premultiplied);
    name->image.fill(Qt::transparent);
    name->anchor = QPoint(int(-left), int(-top));

    const int f = metrics.fonts[label.place];
    const QFont font = placeFont(m_fontFamily, f);
    const double textScale = fontSizes[f / 2] / layoutPixelSize;
    const double r = metrics.radius(label.place);
    const double textX =
        label.textOnLeft ? -(r + textGap + double(metrics.textWidths[label.place])) : r + textGap;
    QPainterPath text;
    text.addText(0.0, QFontMetricsF(font).ascent(), font, metrics.places->name(label.place));
    text =
        QTransform(textScale, 0.0, 0.0, textScale, textX, -metrics.textHeight[f] * 0.5).map(text);

    QPainter painter(&name->image);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.translate(-left, -top);
    painter.scale(ratio, ratio);
    // The halo goes on opaque and then takes its colour's alpha as a whole, so where the dot's
    // and the text's halos overlap it is no darker.
    QColor halo = palette.placeHalo;
    const int haloAlpha = halo.alpha();
    halo.setAlpha(255);
    painter.strokePath(text,
                       QPen(halo, 2.0 * haloWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setPen(Qt::NoPen);
    painter.setBrush(halo);
    painter.drawEllipse(QPointF(0.0, 0.0), r + haloWidth, r + haloWidth);
    painter.save();
    painter.resetTransform();
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(name->image.rect(), QColor(0, 0, 0, haloAlpha));
    painter.restore();
    painter.fillPath(text, palette.placeText);
    painter.setBrush(palette.placeText);
    painter.drawEllipse(QPointF(0.0, 0.0), r, r);
    if (metrics.places->place(label.place).capital) {
        painter.setBrush(halo);
        painter.drawEllipse(QPointF(0.0, 0.0), r * 0.45, r * 0.45);
    }
    painter.end();

    const auto bytes = std::size_t(name->image.sizeInBytes());
    const std::lock_guard lock(m_imageMutex);
    // A long pan meets new names without end: start afresh rather than grow.
    if (m_imageBytes + bytes > imageCacheByteLimit) {
        m_images.clear();
        m_imageBytes = 0;
    }
    const auto [it, inserted] = m_images.emplace(key, std::move(name));
    if (inserted)
        m_imageBytes += bytes;
    return it->second;
}

std::size_t PlaceLabelLayout::ImageKeyHash::operator()(const ImageKey &key) const noexcept
{
    std::size_t seed = std::hash<double>{}(key.devicePixelRatio);
    for (const std::uint64_t part :
         {std::uint64_t(key.place) << 1 | key.textOnLeft, std::uint64_t(key.text) << 32 | key.halo})
        seed ^=
            std::hash<std::uint64_t>{}(part) + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2);
    return seed;
}

std::size_t PlaceLabelLayout::cachedLevelCount() const
{
    const std::lock_guard lock(m_levelMutex);
    return m_levels.size();
}

std::size_t PlaceLabelLayout::imageCacheBytes() const
{
    const std::lock_guard lock(m_imageMutex);
    return m_imageBytes;
}
