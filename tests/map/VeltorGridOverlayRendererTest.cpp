#include "VeltorGridOverlayRenderer.h"
#include "VeltorFormatter.h"
#include "VeltorGridGeometry.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <set>
#include <thread>
#include <vector>

namespace {

constexpr double W = mapWorldWidth;
constexpr VeltorFormat Four = VeltorFormat::FourCharacters;
constexpr VeltorFormat Eight = VeltorFormat::EightCharacters;

// ---- pixels ----------------------------------------------------------------------------------

struct Argb
{
    double a, r, g, b; // premultiplied, 0..255
};

Argb premultiplied(const QColor &colour)
{
    const double a = colour.alpha();
    return {a, colour.red() * a / 255.0, colour.green() * a / 255.0, colour.blue() * a / 255.0};
}

// Source over destination, both premultiplied.
Argb over(const Argb &src, const Argb &dst)
{
    const double k = (255.0 - src.a) / 255.0;
    return {src.a + dst.a * k, src.r + dst.r * k, src.g + dst.g * k, src.b + dst.b * k};
}

constexpr Argb transparent{0, 0, 0, 0};

Argb pixel(const QImage &image, int x, int y)
{
    EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
    const QRgb raw = reinterpret_cast<const QRgb *>(image.constScanLine(y))[x];
    return {double(qAlpha(raw)), double(qRed(raw)), double(qGreen(raw)), double(qBlue(raw))};
}

testing::AssertionResult pixelIs(const QImage &image, int x, int y, const Argb &expected)
{
    const Argb actual = pixel(image, x, y);
    const double tolerance = 2.0;
    if (std::fabs(actual.a - expected.a) <= tolerance &&
        std::fabs(actual.r - expected.r) <= tolerance &&
        std::fabs(actual.g - expected.g) <= tolerance &&
        std::fabs(actual.b - expected.b) <= tolerance)
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "pixel (" << x << ", " << y << ") is argb(" << actual.a << ", " << actual.r << ", "
           << actual.g << ", " << actual.b << "), expected argb(" << expected.a << ", "
           << expected.r << ", " << expected.g << ", " << expected.b << ")";
}

// Glyph ink: the text colour (0.2, 0.2, 0.4) covering at least about half of an opaque pixel.
// (Lines, line over halo, are darker but translucent.)
bool isTextCore(const QImage &image, int x, int y)
{
    const Argb p = pixel(image, x, y);
    return p.a >= 250.0 && p.r <= 160.0 && p.b > p.r;
}

QRect textCoreBounds(const QImage &image, QRect window = QRect())
{
    if (window.isNull())
        window = image.rect();
    QRect bounds;
    for (int y = window.top(); y <= window.bottom(); ++y)
        for (int x = window.left(); x <= window.right(); ++x)
            if (isTextCore(image, x, y))
                bounds |= QRect(x, y, 1, 1);
    return bounds;
}

// ---- tiles -----------------------------------------------------------------------------------

// Whole screen points, as the map lays its tiles out.
double snapToPoint(double value, double zoomScale)
{
    return std::round(value * zoomScale) / zoomScale;
}

MapRect tileAt(double x, double y, double zoomScale, double points = 256.0)
{
    return {snapToPoint(x, zoomScale), snapToPoint(y, zoomScale), points / zoomScale,
            points / zoomScale};
}

int pixelOf(double mapValue, double origin, double scale)
{
    return int(std::lround((mapValue - origin) * scale));
}

std::set<QString> labelsOf(const MapRect &rect, double zoomScale, VeltorFormat preference)
{
    const double n = VeltorGrid::gridDivisions(zoomScale, preference);
    VeltorFormatter formatter;
    formatter.setFormat(VeltorGrid::labelFormat(zoomScale, preference));
    std::set<QString> labels;
    for (const VeltorGrid::Cell &cell :
         VeltorGrid::cells(VeltorGrid::columnLines(rect, zoomScale, n),
                           VeltorGrid::rowLines(rect, zoomScale, n), formatter))
        labels.insert(cell.label);
    return labels;
}

// The cell IO91 (2° W to 0°, 51° N to 52° N) at a zoom scale.
VeltorGrid::Cell io91(double zoomScale)
{
    const MapPoint london = mapPointForCoordinate({51.5, -1.0});
    const MapRect around{london.x, london.y, 0.0, 0.0};
    VeltorFormatter formatter;
    formatter.setFormat(Four);
    const std::vector<VeltorGrid::Cell> cells =
        VeltorGrid::cells(VeltorGrid::columnLines(around, zoomScale, 180.0),
                          VeltorGrid::rowLines(around, zoomScale, 180.0), formatter);
    EXPECT_EQ(cells.size(), 1u);
    EXPECT_EQ(cells.at(0).label, QStringLiteral("IO91"));
    return cells.at(0);
}

// ---- basics ----------------------------------------------------------------------------------

TEST(VeltorGridOverlayRenderer, Attributes)
{
    const VeltorGridOverlayRenderer phone;
    const VeltorGridOverlayRenderer tablet(true);
    EXPECT_EQ(phone.fontSize(), 20.0);
    EXPECT_EQ(tablet.fontSize(), 15.0);
    EXPECT_EQ(phone.stringAttributes().foregroundColor, QColor::fromRgbF(0.2f, 0.2f, 0.4f, 1.0f));
    EXPECT_EQ(phone.stringAttributes().fontWeight, QFont::Medium);
    EXPECT_FALSE(phone.stringAttributes().fontFamily.isEmpty());
    EXPECT_EQ(phone.attributedStringCacheZoom(), 0.0);
    EXPECT_EQ(phone.labelCacheSize(), 0u);
    EXPECT_EQ(phone.labelCreationCount(), 0u);
    EXPECT_TRUE(phone.canDrawMapRect(MapRect::world(), 1e-6));
    EXPECT_TRUE(phone.canDrawMapRect({-1, -1, 0, 0}, 0.0));
}

TEST(VeltorGridOverlayRenderer, TileTransformMapsTheRectangleOntoThePixels)
{
    const MapRect rect{W / 2, 1000.0, 2048.0, 4096.0};
    const QTransform transform = tileTransform(rect, 0.125, 2.0);
    EXPECT_EQ(transform.map(QPointF(rect.x, rect.y)), QPointF(0, 0));
    EXPECT_EQ(transform.map(QPointF(rect.maxX(), rect.maxY())), QPointF(512, 1024));

    VeltorGridOverlayRenderer renderer;
    const QImage image = renderer.renderTile(rect, 0.125, 2.0, Eight);
    EXPECT_EQ(image.size(), QSize(512, 1024));
    EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(image.devicePixelRatio(), 2.0);
}

// ---- lines and halos -------------------------------------------------------------------------

struct LineCase
{
    double zoomScale;
    VeltorFormat preference;
    int devicePixelRatio;
};

class LinePixelsTest : public testing::TestWithParam<LineCase>
{
};

// Tiles whose shared edge is the meridian of Greenwich (a line at every level) and which hold
// the parallel of 50° N (also a line at every level) 100 points below their top.
TEST_P(LinePixelsTest, OnePointLineWithAOnePointHaloOnEachSide)
{
    const auto [z, preference, d] = GetParam();
    const double s = z * d;
    const double n = VeltorGrid::gridDivisions(z, preference);
    const double trueParallel = mapPointForCoordinate({50.0, 0.0}).y;
    double parallel = 0.0;
    for (const double y : VeltorGrid::rowLines({0, trueParallel, 0, 0}, z, n))
        if (std::fabs(y - trueParallel) <= 0.5 / z)
            parallel = y;
    ASSERT_NE(parallel, 0.0);
    const MapRect east = tileAt(W / 2, parallel - 100.0 / z, z);
    const MapRect west = tileAt(W / 2 - 256.0 / z, parallel - 100.0 / z, z);

    VeltorGridOverlayRenderer renderer;
    const QImage eastImage = renderer.renderTile(east, z, d, preference);
    const QImage westImage = renderer.renderTile(west, z, d, preference);
    ASSERT_EQ(eastImage.width(), 256 * d);

    const Argb halo = over(premultiplied(VeltorGridOverlayRenderer::haloColor()), transparent);
    const Argb line = over(premultiplied(VeltorGridOverlayRenderer::lineColor()), halo);

    // A pixel row clear of every parallel's halo, away from the labels' rows.
    const int parallelRow = pixelOf(parallel, east.y, s);
    ASSERT_EQ(parallelRow, 100 * d);
    const int row = parallelRow + 4 * d;
    for (const double y : VeltorGrid::rowLines(east, z, n))
        ASSERT_GT(std::abs(pixelOf(y, east.y, s) - row), 3 * d) << "choose another row";

    // The meridian is the east tile's first point: line over halo; then one point of halo.
    for (int i = 0; i < d; ++i) {
        EXPECT_TRUE(pixelIs(eastImage, i, row, line));
        EXPECT_TRUE(pixelIs(eastImage, d + i, row, halo));
        // The point before it lies in the west tile: halo only.
        EXPECT_TRUE(pixelIs(westImage, westImage.width() - 1 - i, row, halo));
    }
    EXPECT_TRUE(pixelIs(eastImage, 2 * d, row, transparent));
    EXPECT_TRUE(pixelIs(westImage, westImage.width() - 1 - d, row, transparent));

    // The parallel of 50° N, sampled a few points east of the meridian.
    const int column = 4 * d;
    for (int i = 0; i < d; ++i) {
        EXPECT_TRUE(pixelIs(eastImage, column, parallelRow - d + i, halo));
        EXPECT_TRUE(pixelIs(eastImage, column, parallelRow + i, line));
        EXPECT_TRUE(pixelIs(eastImage, column, parallelRow + d + i, halo));
    }
    EXPECT_TRUE(pixelIs(eastImage, column, parallelRow - d - 1, transparent));
    EXPECT_TRUE(pixelIs(eastImage, column, parallelRow + 2 * d, transparent));

    // Where the two lines cross, the line colour lies over two halos.
    const Argb crossing =
        over(premultiplied(VeltorGridOverlayRenderer::lineColor()),
             over(premultiplied(VeltorGridOverlayRenderer::lineColor()),
                  over(premultiplied(VeltorGridOverlayRenderer::haloColor()), halo)));
    EXPECT_TRUE(pixelIs(eastImage, 0, parallelRow, crossing));
}

INSTANTIATE_TEST_SUITE_P(EveryLevel, LinePixelsTest,
                         testing::Values(LineCase{std::ldexp(1.0, -17), Eight, 1}, // fields
                                         LineCase{std::ldexp(1.0, -12), Eight, 1}, // squares
                                         LineCase{std::ldexp(1.0, -12), Four, 2},
                                         LineCase{std::ldexp(1.0, -9), Eight, 1}, // subsquares
                                         LineCase{std::ldexp(1.0, -5), Eight,
                                                  1}, // extended squares
                                         LineCase{std::ldexp(1.0, -5), Eight, 2},
                                         LineCase{1.0, Four, 1})); // squares, far zoomed in

// ---- labels ----------------------------------------------------------------------------------

TEST(VeltorGridOverlayRendererLabels, LabelledTileAndAnUnlabelledNeighbour)
{
    const double z = std::ldexp(1.0, -12); // squares; IO91 is about 364 × 292 points
    const VeltorGrid::Cell cell = io91(z);
    const MapRect labelled = tileAt(cell.centre.x - 128.0 / z, cell.centre.y - 128.0 / z, z);
    // East of the label, inside IO91, across the meridian of Greenwich into JO01, ending well
    // before JO01's label.
    const MapRect neighbour = tileAt(cell.centre.x + 100.0 / z, labelled.y, z, 128.0);

    VeltorGridOverlayRenderer renderer;
    const QImage labelledImage = renderer.renderTile(labelled, z, 1.0, Eight);
    const QImage neighbourImage = renderer.renderTile(neighbour, z, 1.0, Eight);

    // The plate: the text rectangle widened by 6 points each side, centred on the cell.
    const std::shared_ptr<const GridLabel> label =
        renderer.cachedLabel(QStringLiteral("IO91"), z, renderer.labelAttributes(z));
    const VeltorGrid::LabelPlacement placement =
        VeltorGrid::placeLabel(cell.centre, label->size(), z);
    const int plateLeft = pixelOf(placement.plateRect.minX(), labelled.x, z);
    const int plateRight = pixelOf(placement.plateRect.maxX(), labelled.x, z);
    const int plateMiddle = pixelOf(placement.plateRect.midY(), labelled.y, z);
    const int textLeft = pixelOf(placement.textRect.minX(), labelled.x, z);
    EXPECT_EQ(textLeft - plateLeft, 6);
    const Argb plate = premultiplied(VeltorGridOverlayRenderer::plateColor());
    EXPECT_TRUE(pixelIs(labelledImage, plateLeft + 3, plateMiddle, plate));
    EXPECT_TRUE(pixelIs(labelledImage, plateRight - 3, plateMiddle, plate));
    EXPECT_TRUE(pixelIs(labelledImage, plateLeft - 2, plateMiddle, transparent));
    EXPECT_TRUE(pixelIs(labelledImage, plateRight + 1, plateMiddle, transparent));
    const QRect text = textCoreBounds(labelledImage);
    ASSERT_FALSE(text.isNull());
    EXPECT_GE(text.left(), textLeft);
    EXPECT_LE(text.right(), pixelOf(placement.textRect.maxX(), labelled.x, z));

    // The neighbour holds the meridian and its halo and nothing else.
    const int meridian = pixelOf(W / 2, neighbour.x, z);
    ASSERT_GT(meridian, 1);
    ASSERT_LT(meridian, 126);
    int inkedOffLine = 0;
    int clearOnLine = 0;
    for (int y = 0; y < neighbourImage.height(); ++y) {
        for (int x = 0; x < neighbourImage.width(); ++x) {
            const bool onLine = x >= meridian - 1 && x <= meridian + 1;
            const bool inked = pixel(neighbourImage, x, y).a > 0.0;
            if (inked && !onLine)
                ++inkedOffLine;
            if (!inked && onLine)
                ++clearOnLine;
        }
    }
    EXPECT_EQ(inkedOffLine, 0);
    EXPECT_EQ(clearOnLine, 0);
    // It still looked both labels up: IO91 from the cache, JO01 laid out now.
    EXPECT_EQ(labelsOf(neighbour, z, Eight),
              (std::set<QString>{QStringLiteral("IO91"), QStringLiteral("JO01")}));
}

TEST(VeltorGridOverlayRendererLabels, CacheLaysEachLabelOutOncePerZoomScale)
{
    const double z = std::ldexp(1.0, -12);
    const VeltorGrid::Cell cell = io91(z);
    const MapRect a = tileAt(cell.centre.x - 200.0 / z, cell.centre.y - 128.0 / z, z);
    const MapRect b = tileAt(a.maxX(), a.y, z); // shares IO91 (and more) with a
    const std::set<QString> labelsA = labelsOf(a, z, Eight);
    const std::set<QString> labelsB = labelsOf(b, z, Eight);
    std::set<QString> both = labelsA;
    both.insert(labelsB.begin(), labelsB.end());
    ASSERT_TRUE(labelsA.count(QStringLiteral("IO91")));
    ASSERT_TRUE(labelsB.count(QStringLiteral("IO91")));
    ASSERT_LT(both.size(), labelsA.size() + labelsB.size());

    VeltorGridOverlayRenderer renderer;
    renderer.renderTile(a, z, 1.0, Eight);
    EXPECT_EQ(renderer.attributedStringCacheZoom(), z);
    EXPECT_EQ(renderer.labelCreationCount(), labelsA.size());
    renderer.renderTile(b, z, 1.0, Eight);
    EXPECT_EQ(renderer.labelCreationCount(), both.size());
    EXPECT_EQ(renderer.labelCacheSize(), both.size());
    renderer.renderTile(a, z, 1.0, Eight);
    renderer.renderTile(b, z, 1.0, Eight);
    EXPECT_EQ(renderer.labelCreationCount(), both.size());

    // A zoom scale one bit larger empties the cache before its first lookup.
    const double next = std::nextafter(z, 1.0);
    ASSERT_EQ(labelsOf(a, next, Eight), labelsA);
    renderer.renderTile(a, next, 1.0, Eight);
    EXPECT_EQ(renderer.attributedStringCacheZoom(), next);
    EXPECT_EQ(renderer.labelCacheSize(), labelsA.size());
    EXPECT_EQ(renderer.labelCreationCount(), both.size() + labelsA.size());
    // And one bit smaller again.
    const double previous = std::nextafter(next, 0.0);
    ASSERT_EQ(previous, z);
    renderer.renderTile(b, previous, 1.0, Eight);
    EXPECT_EQ(renderer.attributedStringCacheZoom(), z);
    EXPECT_EQ(renderer.labelCacheSize(), labelsB.size());
    EXPECT_EQ(renderer.labelCreationCount(), both.size() + labelsA.size() + labelsB.size());

    renderer.clearLabelCache();
    EXPECT_EQ(renderer.labelCacheSize(), 0u);
    EXPECT_EQ(renderer.attributedStringCacheZoom(), 0.0);
}

TEST(VeltorGridOverlayRendererLabels, CachedLabelIsKeyedByTextAndOutlivesTheCache)
{
    VeltorGridOverlayRenderer renderer;
    const auto first =
        renderer.cachedLabel(QStringLiteral("JO01"), 0.5, renderer.labelAttributes(0.5));
    EXPECT_EQ(renderer.cachedLabel(QStringLiteral("JO01"), 0.5, renderer.labelAttributes(0.5)),
              first);
    // The attributes are not part of the key: within one zoom scale the first layout stays.
    EXPECT_EQ(renderer.cachedLabel(QStringLiteral("JO01"), 0.5, renderer.labelAttributes(1.0)),
              first);
    EXPECT_NE(renderer.cachedLabel(QStringLiteral("JO02"), 0.5, renderer.labelAttributes(0.5)),
              first);
    EXPECT_EQ(renderer.labelCreationCount(), 2u);

    const auto other =
        renderer.cachedLabel(QStringLiteral("JO01"), 0.25, renderer.labelAttributes(0.25));
    EXPECT_NE(other, first);
    EXPECT_EQ(renderer.labelCacheSize(), 1u);
    EXPECT_DOUBLE_EQ(other->size().width, 2.0 * first->size().width);
    EXPECT_FALSE(first->outline({0, 0}).isEmpty()); // still valid after the cache dropped it
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
        const auto label = renderer.cachedLabel(text, z, attributes);
        ASSERT_FALSE(label->image().isNull());
        most = std::max(most, renderer.labelCacheBytes());
        emptied = emptied || renderer.labelCacheSize() < std::size_t(i + 1);
    }
    EXPECT_TRUE(emptied);
    EXPECT_LE(most, VeltorGridOverlayRenderer::labelCacheByteLimit);
    // Within the limit the cache still answers the same label twice.
    const QString last = QStringLiteral("JO2999ab");
    EXPECT_EQ(renderer.cachedLabel(last, z, attributes), renderer.cachedLabel(last, z, attributes));
}

TEST(VeltorGridOverlayRendererLabels, FontIsTwentyPointsOnAPhoneAndFifteenOnATablet)
{
    VeltorGridOverlayRenderer phone;
    VeltorGridOverlayRenderer tablet(true);
    const QString text = QStringLiteral("IO91");
    const double zooms[] = {1e-7, 0.0001, 0.0015, 0.03, 0.05, 1.0, 16.0};
    const double phoneHeight =
        phone.cachedLabel(text, 1.0, phone.labelAttributes(1.0))->size().height;
    for (const double z : zooms) {
        EXPECT_NEAR(phone.labelAttributes(z).fontSize * z, 20.0, 1e-12) << z;
        EXPECT_NEAR(tablet.labelAttributes(z).fontSize * z, 15.0, 1e-12) << z;
        const auto phoneLabel = phone.cachedLabel(text, z, phone.labelAttributes(z));
        const auto tabletLabel = tablet.cachedLabel(text, z, tablet.labelAttributes(z));
        EXPECT_NEAR(phoneLabel->fontSize() * z, 20.0, 1e-12);
        EXPECT_NEAR(phoneLabel->size().height * z, phoneHeight, 1e-9 * phoneHeight) << z;
        EXPECT_NEAR(tabletLabel->size().height / phoneLabel->size().height, 0.75, 1e-9) << z;
        EXPECT_NEAR(tabletLabel->size().width / phoneLabel->size().width, 0.75, 1e-9) << z;
    }
    // The line height of a 20-pixel font of the same family, on screen.
    QFont font(phone.stringAttributes().fontFamily);
    font.setWeight(QFont::Medium);
    font.setPixelSize(20);
    EXPECT_NEAR(phoneHeight, QFontMetricsF(font).height(), 1.5);
}

// The drawn glyphs against text drawn straight at the font size, at zoom scales from far out to
// far in (preference four characters keeps the same label, IO91, at all of them).
TEST(VeltorGridOverlayRendererLabels, DrawnGlyphsHaveTheSameSizeOnScreenAtEveryZoomScale)
{
    for (const bool isTablet : {false, true}) {
        VeltorGridOverlayRenderer renderer(isTablet);
        const int pixels = isTablet ? 15 : 20;
        QImage reference(200, 60, QImage::Format_ARGB32_Premultiplied);
        reference.fill(Qt::white);
        {
            QPainter painter(&reference);
            QFont font(renderer.stringAttributes().fontFamily);
            font.setWeight(QFont::Medium);
            font.setPixelSize(pixels);
            // Hinting would round each advance to whole pixels; the labels scale freely.
            font.setHintingPreference(QFont::PreferNoHinting);
            painter.setFont(font);
            painter.setPen(renderer.stringAttributes().foregroundColor);
            painter.drawText(QPointF(10, 40), QStringLiteral("IO91"));
        }
        const QRect expected = textCoreBounds(reference);
        ASSERT_FALSE(expected.isNull());

        for (const double z : {0.00011, 0.0004, 0.002, 0.05, 1.0, 4.0}) {
            const VeltorGrid::Cell cell = io91(z);
            const MapRect tile = tileAt(cell.centre.x - 128.0 / z, cell.centre.y - 128.0 / z, z);
            const QImage image = renderer.renderTile(tile, z, 1.0, Four);
            // The middle of the tile: neighbouring cells' labels lie farther out.
            const QRect drawn = textCoreBounds(image, QRect(48, 98, 160, 60));
            ASSERT_FALSE(drawn.isNull()) << z;
            EXPECT_NEAR(drawn.height(), expected.height(), 1)
                << "z " << z << " tablet " << isTablet;
            EXPECT_NEAR(drawn.width(), expected.width(), 2) << "z " << z << " tablet " << isTablet;
            // Centred on the cell centre, within the snapping.
            EXPECT_NEAR(drawn.center().x(), 128, 2.5) << z;
        }
    }
}

TEST(VeltorGridOverlayRendererLabels, NeighbouringTilesMeetWithoutSeams)
{
    for (const double z : {std::ldexp(1.0, -12), std::ldexp(1.0, -5)}) {
        const VeltorGrid::Cell cell = io91(z);
        const MapRect whole =
            tileAt(cell.centre.x - 256.0 / z, cell.centre.y - 256.0 / z, z, 512.0);
        VeltorGridOverlayRenderer renderer;
        const QImage wholeImage = renderer.renderTile(whole, z, 1.0, Eight);
        for (int ty = 0; ty < 2; ++ty) {
            for (int tx = 0; tx < 2; ++tx) {
                const MapRect quarter{whole.x + tx * 256.0 / z, whole.y + ty * 256.0 / z, 256.0 / z,
                                      256.0 / z};
                const QImage image = renderer.renderTile(quarter, z, 1.0, Eight);
                int different = 0;
                for (int y = 0; y < 256; ++y)
                    for (int x = 0; x < 256; ++x)
                        if (!pixelIs(wholeImage, tx * 256 + x, ty * 256 + y, pixel(image, x, y)))
                            ++different;
                EXPECT_EQ(different, 0) << "z " << z << " quarter " << tx << ", " << ty;
            }
        }
    }
}

// Labels are painted once into an image at the device scale of the call that lays them out;
// a call at another scale draws the outlines instead. Both must look the same.
TEST(VeltorGridOverlayRendererLabels, PreparedImageAndOutlinesGiveTheSamePicture)
{
    const double z = std::ldexp(1.0, -5); // extended squares, eight-character labels
    const VeltorGrid::Cell cell = io91(std::ldexp(1.0, -12));
    const MapRect tile = tileAt(cell.centre.x, cell.centre.y, z);
    // Over an opaque map, so that the two ways of blending have something to differ on.
    const auto drawOverMap = [&](VeltorGridOverlayRenderer &renderer, double devicePixelRatio) {
        const int side = int(256 * devicePixelRatio);
        QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
        image.fill(QColor(181, 208, 160));
        QPainter painter(&image);
        painter.setTransform(tileTransform(tile, z, devicePixelRatio));
        renderer.drawMapRect(tile, z, painter, Eight);
        return image;
    };
    const std::set<QString> labels = labelsOf(tile, z, Eight);

    VeltorGridOverlayRenderer prepared;
    const QImage fromImages = drawOverMap(prepared, 1.0);
    for (const QString &text : labels) {
        const auto label = prepared.cachedLabel(text, z, prepared.labelAttributes(z));
        EXPECT_FALSE(label->image().isNull()) << qPrintable(text);
        EXPECT_EQ(label->imageScale(), z);
    }

    VeltorGridOverlayRenderer outlined;
    drawOverMap(outlined, 2.0); // lays the labels out for twice the scale
    const std::uint64_t created = outlined.labelCreationCount();
    const QImage fromOutlines = drawOverMap(outlined, 1.0);
    EXPECT_EQ(outlined.labelCreationCount(), created);
    for (const QString &text : labels)
        EXPECT_EQ(outlined.cachedLabel(text, z, outlined.labelAttributes(z))->imageScale(), 2 * z);

    ASSERT_EQ(fromImages.size(), fromOutlines.size());
    double largest = 0.0;
    int inked = 0;
    for (int y = 0; y < fromImages.height(); ++y) {
        for (int x = 0; x < fromImages.width(); ++x) {
            const Argb a = pixel(fromImages, x, y);
            const Argb b = pixel(fromOutlines, x, y);
            largest = std::max({largest, std::fabs(a.a - b.a), std::fabs(a.r - b.r),
                                std::fabs(a.g - b.g), std::fabs(a.b - b.b)});
            if (isTextCore(fromImages, x, y))
                ++inked;
        }
    }
    EXPECT_GT(inked, 100);
    EXPECT_LE(largest, 3.0);
}

// ---- threads ---------------------------------------------------------------------------------

TEST(VeltorGridOverlayRendererThreads, TilesOfDifferentZoomScalesAtOnce)
{
    const double zooms[] = {std::ldexp(1.0, -17), std::ldexp(1.0, -12), 0.0003,
                            std::ldexp(1.0, -9),  std::ldexp(1.0, -5),  0.5};
    constexpr int threadCount = int(std::size(zooms));
    constexpr int tilesPerThread = 3;
    constexpr int rounds = 3;

    const auto tilesFor = [](double z) {
        const MapPoint london = mapPointForCoordinate({51.5, -0.12});
        std::vector<MapRect> tiles;
        for (int i = 0; i < tilesPerThread; ++i)
            tiles.push_back(tileAt(london.x + (i - 1) * 256.0 / z, london.y - 128.0 / z, z));
        return tiles;
    };

    // What each tile must look like, drawn on this thread by a renderer of its own.
    std::vector<std::vector<QImage>> expected(threadCount);
    {
        VeltorGridOverlayRenderer reference;
        for (int t = 0; t < threadCount; ++t)
            for (const MapRect &tile : tilesFor(zooms[t]))
                expected[t].push_back(reference.renderTile(tile, zooms[t], 1.0, Eight));
    }

    VeltorGridOverlayRenderer shared;
    std::vector<std::vector<QImage>> drawn(threadCount);
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&, t] {
            const std::vector<MapRect> tiles = tilesFor(zooms[t]);
            for (int round = 0; round < rounds; ++round)
                for (const MapRect &tile : tiles)
                    drawn[t].push_back(shared.renderTile(tile, zooms[t], 1.0, Eight));
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    for (int t = 0; t < threadCount; ++t) {
        ASSERT_EQ(drawn[t].size(), std::size_t(tilesPerThread * rounds));
        for (int k = 0; k < tilesPerThread * rounds; ++k)
            EXPECT_TRUE(drawn[t][k] == expected[t][k % tilesPerThread])
                << "zoom " << zooms[t] << " tile " << k % tilesPerThread;
    }
    EXPECT_NE(std::find(std::begin(zooms), std::end(zooms), shared.attributedStringCacheZoom()),
              std::end(zooms));
    EXPECT_GE(shared.labelCreationCount(), shared.labelCacheSize());
}

} // namespace
