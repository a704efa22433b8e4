#include "VeltorGridOverlayRenderer.h"
#include "VeltorFormatter.h"
#include "VeltorGridGeometry.h"

#include "TestTable.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <set>
#include <vector>

namespace {

constexpr double W = mapWorldWidth;
constexpr VeltorFormat Four = VeltorFormat::FourCharacters;
constexpr VeltorFormat Eight = VeltorFormat::EightCharacters;

// ---- pixels ----------------------------------------------------------------------------------

using Argb = std::array<double, 4>; // premultiplied alpha, red, green, blue, 0..255
constexpr Argb transparent{};

// Source over destination, both premultiplied.
Argb over(const QColor &source, const Argb &dst = transparent)
{
    const double a = source.alpha() / 255.0, k = 1.0 - a;
    return {255.0 * a + dst[0] * k, source.red() * a + dst[1] * k, source.green() * a + dst[2] * k,
            source.blue() * a + dst[3] * k};
}

Argb pixel(const QImage &image, int x, int y)
{
    EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
    const QRgb raw = reinterpret_cast<const QRgb *>(image.constScanLine(y))[x];
    return {double(qAlpha(raw)), double(qRed(raw)), double(qGreen(raw)), double(qBlue(raw))};
}

double difference(const Argb &p, const Argb &q)
{
    return std::max({std::fabs(p[0] - q[0]), std::fabs(p[1] - q[1]), std::fabs(p[2] - q[2]),
                     std::fabs(p[3] - q[3])});
}

// The largest channel difference between an image and the same-sized part of another at offset.
double largestDifference(const QImage &image, const QImage &other, QPoint offset = QPoint())
{
    double largest = 0.0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            largest = std::max(largest, difference(pixel(image, x, y),
                                                   pixel(other, x + offset.x(), y + offset.y())));
    return largest;
}

testing::AssertionResult pixelIs(const QImage &image, int x, int y, const Argb &expected)
{
    const Argb p = pixel(image, x, y);
    if (difference(p, expected) <= 2.0)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "pixel (" << x << ", " << y << ") is argb(" << p[0]
                                       << ", " << p[1] << ", " << p[2] << ", " << p[3] << ")";
}

// Glyph ink: the text colour (0.2, 0.2, 0.4) covering at least about half of an opaque pixel.
// (Lines, line over halo, are darker but translucent.)
QRect textCoreBounds(const QImage &image, QRect window = QRect())
{
    window = window.isNull() ? image.rect() : window;
    QRect bounds;
    for (int y = window.top(); y <= window.bottom(); ++y)
        for (int x = window.left(); x <= window.right(); ++x)
            if (const Argb p = pixel(image, x, y); p[0] >= 250.0 && p[1] <= 160.0 && p[3] > p[1])
                bounds |= QRect(x, y, 1, 1);
    return bounds;
}

// ---- tiles -----------------------------------------------------------------------------------

// At whole screen points, as the map lays its tiles out.
MapRect tileAt(double x, double y, double zoomScale, double points = 256.0)
{
    return {std::round(x * zoomScale) / zoomScale, std::round(y * zoomScale) / zoomScale,
            points / zoomScale, points / zoomScale};
}

int pixelOf(double mapValue, double origin, double scale)
{
    return int(std::lround((mapValue - origin) * scale));
}

std::vector<VeltorGrid::Cell> cellsOf(const MapRect &rect, double zoomScale, double n,
                                      VeltorFormat format)
{
    VeltorFormatter formatter;
    formatter.setFormat(format);
    return VeltorGrid::cells(VeltorGrid::columnLines(rect, zoomScale, n),
                             VeltorGrid::rowLines(rect, zoomScale, n), formatter);
}

std::set<QString> labelsOf(const MapRect &rect, double zoomScale, VeltorFormat preference)
{
    std::set<QString> labels;
    for (const VeltorGrid::Cell &cell :
         cellsOf(rect, zoomScale, VeltorGrid::gridDivisions(zoomScale, preference),
                 VeltorGrid::labelFormat(zoomScale, preference)))
        labels.insert(cell.label);
    return labels;
}

// The cell IO91 (2° W to 0°, 51° N to 52° N) at a zoom scale.
VeltorGrid::Cell io91(double zoomScale)
{
    const MapPoint london = mapPointForCoordinate({51.5, -1.0});
    const std::vector<VeltorGrid::Cell> cells =
        cellsOf({london.x, london.y, 0.0, 0.0}, zoomScale, 180.0, Four);
    EXPECT_EQ(cells.size(), 1u);
    EXPECT_EQ(cells.at(0).label, QStringLiteral("IO91"));
    return cells.at(0);
}

// Tiles whose shared edge is the meridian of Greenwich (a line at every level) and which hold
// the parallel of 50° N (also a line at every level) 100 points below their top: fields,
// squares, subsquares and extended squares, and squares far zoomed in.
TEST(VeltorGridOverlayRenderer, OnePointLineWithAOnePointHaloOnEachSideAtEveryLevel)
{
    const QColor lineColour = VeltorGridOverlayRenderer::lineColor();
    const Argb halo = over(VeltorGridOverlayRenderer::haloColor());
    const Argb line = over(lineColour, halo);
    // Where the two lines cross, the line colour lies over two halos.
    const Argb crossing =
        over(lineColour, over(lineColour, over(VeltorGridOverlayRenderer::haloColor(), halo)));
    for (const QStringList &c : testTable("map/grid-overlay-lines.tsv")) {
        SCOPED_TRACE(c.join(u' ').toStdString());
        const double z = c[0].toDouble();
        const auto preference = static_cast<VeltorFormat>(c[1].toInt() / 2 - 1); // 2 to 8
        const int d = c[2].toInt();
        // Lines lie on whole screen points.
        const double parallel = std::round(mapPointForCoordinate({50.0, 0.0}).y * z) / z;
        VeltorGridOverlayRenderer renderer;
        const QImage east =
            renderer.renderTile(tileAt(W / 2, parallel - 100.0 / z, z), z, d, preference);
        const QImage west = renderer.renderTile(tileAt(W / 2 - 256.0 / z, parallel - 100.0 / z, z),
                                                z, d, preference);
        ASSERT_EQ(east.size(), QSize(256 * d, 256 * d));
        ASSERT_EQ(west.size(), east.size());

        // The meridian is the east tile's first point: line over halo, then one point of halo;
        // the point before it lies in the west tile: halo only. Then the parallel of 50° N,
        // sampled a few points east of the meridian; row and column clear of other lines.
        const int parallelRow = 100 * d, row = parallelRow + 4 * d, column = 4 * d;
        for (int i = 0; i < d; ++i) {
            EXPECT_TRUE(pixelIs(east, i, row, line));
            EXPECT_TRUE(pixelIs(east, d + i, row, halo));
            EXPECT_TRUE(pixelIs(west, west.width() - 1 - i, row, halo));
            EXPECT_TRUE(pixelIs(east, column, parallelRow - d + i, halo));
            EXPECT_TRUE(pixelIs(east, column, parallelRow + i, line));
            EXPECT_TRUE(pixelIs(east, column, parallelRow + d + i, halo));
        }
        EXPECT_TRUE(pixelIs(east, 2 * d, row, transparent));
        EXPECT_TRUE(pixelIs(west, west.width() - 1 - d, row, transparent));
        EXPECT_TRUE(pixelIs(east, column, parallelRow - d - 1, transparent));
        EXPECT_TRUE(pixelIs(east, column, parallelRow + 2 * d, transparent));
        EXPECT_TRUE(pixelIs(east, 0, parallelRow, crossing));
    }
}

// ---- labels ----------------------------------------------------------------------------------

// East of IO91's label, across the meridian of Greenwich into JO01 and short of JO01's label:
// the meridian and its halo and nothing else.
TEST(VeltorGridOverlayRendererLabels, ATileNoPlateReachesHoldsOnlyItsLines)
{
    const double z = 0x1p-12; // squares; IO91 is about 364 × 292 points
    const VeltorGrid::Cell cell = io91(z);
    const MapRect tile = tileAt(cell.centre.x + 100.0 / z, cell.centre.y - 128.0 / z, z, 128.0);
    const QImage image = VeltorGridOverlayRenderer().renderTile(tile, z, 1.0, Eight);
    const int meridian = pixelOf(W / 2, tile.x, z);
    int wrong = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            wrong += (pixel(image, x, y)[0] > 0.0) != (std::abs(x - meridian) <= 1);
    EXPECT_EQ(wrong, 0);
}

TEST(VeltorGridOverlayRendererLabels, CacheLaysEachLabelOutOncePerZoomScale)
{
    const double z = 0x1p-12, next = std::nextafter(z, 1.0);
    const VeltorGrid::Cell cell = io91(z);
    const MapRect a = tileAt(cell.centre.x - 200.0 / z, cell.centre.y - 128.0 / z, z);
    const MapRect b = tileAt(a.maxX(), a.y, z); // shares IO91 (and more) with a
    const std::set<QString> labelsA = labelsOf(a, z, Eight), labelsB = labelsOf(b, z, Eight);
    std::set<QString> both = labelsA;
    both.insert(labelsB.begin(), labelsB.end());
    ASSERT_LT(both.size(), labelsA.size() + labelsB.size());
    ASSERT_EQ(labelsOf(a, next, Eight), labelsA);

    VeltorGridOverlayRenderer renderer;
    renderer.renderTile(a, z, 1.0, Eight);
    EXPECT_EQ(renderer.attributedStringCacheZoom(), z);
    EXPECT_EQ(renderer.labelCreationCount(), labelsA.size());
    for (const MapRect &tile : {b, a, b})
        renderer.renderTile(tile, z, 1.0, Eight);
    EXPECT_EQ(renderer.labelCreationCount(), both.size());
    EXPECT_EQ(renderer.labelCacheSize(), both.size());
    // A zoom scale one bit larger empties the cache before its first lookup; so does going back.
    renderer.renderTile(a, next, 1.0, Eight);
    EXPECT_EQ(renderer.attributedStringCacheZoom(), next);
    EXPECT_EQ(renderer.labelCacheSize(), labelsA.size());
    renderer.renderTile(b, z, 1.0, Eight);
    EXPECT_EQ(renderer.attributedStringCacheZoom(), z);
    EXPECT_EQ(renderer.labelCacheSize(), labelsB.size());
    EXPECT_EQ(renderer.labelCreationCount(), both.size() + labelsA.size() + labelsB.size());

    renderer.clearLabelCache();
    EXPECT_EQ(renderer.labelCacheSize(), 0u);
    EXPECT_EQ(renderer.attributedStringCacheZoom(), 0.0);
}

TEST(VeltorGridOverlayRendererLabels, ALongPanAtOneZoomScaleKeepsTheCacheWithinItsLimit)
{
    VeltorGridOverlayRenderer renderer;
    const double z = 0x1p-8;
    // Labels with prepared images at device pixel ratio 3, as a phone draws them.
    const GridLabelAttributes attributes = renderer.labelAttributes(z, 3.0 * z);
    std::size_t most = 0;
    bool emptied = false;
    for (int i = 0; i < 3000; ++i) {
        const QString text = QStringLiteral("JO%1ab").arg(i, 4, 10, QLatin1Char('0'));
        ASSERT_FALSE(renderer.cachedLabel(text, z, attributes)->image().isNull());
        most = std::max(most, renderer.labelCacheBytes());
        emptied = emptied || renderer.labelCacheSize() < std::size_t(i + 1);
    }
    EXPECT_TRUE(emptied);
    EXPECT_LE(most, VeltorGridOverlayRenderer::labelCacheByteLimit);
    // Within the limit the cache still answers the same label twice.
    const QString last = QStringLiteral("JO2999ab");
    EXPECT_EQ(renderer.cachedLabel(last, z, attributes), renderer.cachedLabel(last, z, attributes));
}

// The drawn glyphs against text drawn straight at the font size, 20 pixels on a phone and 15 on
// a tablet, at zoom scales from far out to far in (preference four characters keeps the same
// label, IO91, at all of them); and the plate around them.
TEST(VeltorGridOverlayRendererLabels, DrawnGlyphsHaveTheSameSizeOnScreenAtEveryZoomScale)
{
    const Argb plateColour = over(VeltorGridOverlayRenderer::plateColor());
    for (const bool isTablet : {false, true}) {
        VeltorGridOverlayRenderer renderer(isTablet);
        QImage reference(200, 60, QImage::Format_ARGB32_Premultiplied);
        reference.fill(Qt::white);
        QPainter painter(&reference);
        QFont font(renderer.stringAttributes().fontFamily);
        font.setWeight(QFont::Medium);
        font.setPixelSize(isTablet ? 15 : 20);
        // Hinting would round each advance to whole pixels; the labels scale freely.
        font.setHintingPreference(QFont::PreferNoHinting);
        painter.setFont(font);
        painter.setPen(renderer.stringAttributes().foregroundColor);
        painter.drawText(QPointF(10, 40), QStringLiteral("IO91"));
        painter.end();
        const QRect expected = textCoreBounds(reference);
        ASSERT_FALSE(expected.isNull());

        for (const double z : {0.00011, 0.0004, 0.002, 0.05, 1.0, 4.0}) {
            SCOPED_TRACE(testing::Message() << "z " << z << " tablet " << isTablet);
            const VeltorGrid::Cell cell = io91(z);
            const MapRect tile = tileAt(cell.centre.x - 128.0 / z, cell.centre.y - 128.0 / z, z);
            const QImage image = renderer.renderTile(tile, z, 1.0, Four);
            // The middle of the tile: neighbouring cells' labels lie farther out.
            const QRect drawn = textCoreBounds(image, QRect(48, 98, 160, 60));
            ASSERT_FALSE(drawn.isNull());
            EXPECT_NEAR(drawn.height(), expected.height(), 1);
            EXPECT_NEAR(drawn.width(), expected.width(), 2);
            EXPECT_NEAR(drawn.center().x(), 128, 2.5); // centred on the cell, within the snapping
            // The plate is filled to its edges and no farther.
            const auto label =
                renderer.cachedLabel(QStringLiteral("IO91"), z, renderer.labelAttributes(z));
            const MapRect plate = VeltorGrid::placeLabel(cell.centre, label->size(), z).plateRect;
            const int left = pixelOf(plate.minX(), tile.x, z);
            const int right = pixelOf(plate.maxX(), tile.x, z);
            const int middle = pixelOf(plate.midY(), tile.y, z);
            EXPECT_TRUE(pixelIs(image, left + 3, middle, plateColour));
            EXPECT_TRUE(pixelIs(image, right - 3, middle, plateColour));
            EXPECT_TRUE(pixelIs(image, left - 2, middle, transparent));
            EXPECT_TRUE(pixelIs(image, right + 1, middle, transparent));
        }
    }
}

TEST(VeltorGridOverlayRendererLabels, NeighbouringTilesMeetWithoutSeams)
{
    for (const double z : {0x1p-12, 0x1p-5}) {
        const VeltorGrid::Cell cell = io91(z);
        const MapRect whole =
            tileAt(cell.centre.x - 256.0 / z, cell.centre.y - 256.0 / z, z, 512.0);
        VeltorGridOverlayRenderer renderer;
        const QImage wholeImage = renderer.renderTile(whole, z, 1.0, Eight);
        for (const QPoint at : {QPoint(0, 0), QPoint(256, 0), QPoint(0, 256), QPoint(256, 256)}) {
            const MapRect quarter{whole.x + at.x() / z, whole.y + at.y() / z, 256.0 / z, 256.0 / z};
            EXPECT_LE(
                largestDifference(renderer.renderTile(quarter, z, 1.0, Eight), wholeImage, at), 2.0)
                << "z " << z << " quarter at " << at.x() << ", " << at.y();
        }
    }
}

// Labels are painted once into an image at the device scale of the call that lays them out;
// a call at another scale draws the outlines instead. Both must look the same.
TEST(VeltorGridOverlayRendererLabels, PreparedImageAndOutlinesGiveTheSamePicture)
{
    const double z = 0x1p-5; // extended squares, eight-character labels
    const VeltorGrid::Cell cell = io91(0x1p-12);
    const MapRect tile = tileAt(cell.centre.x, cell.centre.y, z);
    // Over an opaque map, so that the two ways of blending have something to differ on.
    const auto drawOverMap = [&](VeltorGridOverlayRenderer &renderer, double devicePixelRatio) {
        QImage image(QSize(256, 256) * devicePixelRatio, QImage::Format_ARGB32_Premultiplied);
        image.fill(QColor(181, 208, 160));
        QPainter painter(&image);
        painter.setTransform(tileTransform(tile, z, devicePixelRatio));
        renderer.drawMapRect(tile, z, painter, Eight);
        return image;
    };
    VeltorGridOverlayRenderer prepared, outlined;
    const QImage fromImages = drawOverMap(prepared, 1.0);
    drawOverMap(outlined, 2.0); // lays the labels out for twice the scale
    const std::uint64_t created = outlined.labelCreationCount();
    const QImage fromOutlines = drawOverMap(outlined, 1.0);
    EXPECT_EQ(outlined.labelCreationCount(), created);
    for (const QString &text : labelsOf(tile, z, Eight)) {
        const auto label = prepared.cachedLabel(text, z, prepared.labelAttributes(z));
        EXPECT_FALSE(label->image().isNull()) << qPrintable(text);
        EXPECT_EQ(label->imageScale(), z);
        EXPECT_EQ(outlined.cachedLabel(text, z, outlined.labelAttributes(z))->imageScale(), 2 * z);
    }
    EXPECT_LE(largestDifference(fromImages, fromOutlines), 3.0);
    EXPECT_GT(textCoreBounds(fromImages).width(), 20); // the labels were drawn at all
}

} // namespace
