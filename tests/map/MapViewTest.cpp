#include "FakeTileSource.h"
#include "MapView.h"
#include "RenderedTileSource.h"

#include <QElapsedTimer>
#include <QPointingDevice>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>

namespace {

constexpr double W = mapWorldWidth;

bool waitUntil(const std::function<bool()> &done, int timeoutMs = 5000)
{
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > timeoutMs)
            return false;
        QTest::qWait(5);
    }
    return true;
}

// A window of 400 × 400 points holding one map, its basemap a fake the test answers.
class MapViewTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        window = std::make_unique<QQuickWindow>();
        window->resize(400, 400);
        map = new MapView(window->contentItem());
        map->setSize(QSizeF(400, 400));
        auto owned = std::make_unique<FakeTileSource>();
        tiles = owned.get();
        map->setBaseTileSource(std::move(owned));
        map->setLongPressInterval(60);
        map->setZoomLevel(10.0);
        map->setCenter(50.0, 10.0);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }

    // The coordinate under a view point, as (latitude, longitude).
    Coordinate at(QPointF point) const { return map->coordinateForPoint(point); }

    void expectSameCoordinate(Coordinate actual, Coordinate expected, double tolerance = 1e-6)
    {
        EXPECT_NEAR(actual.latitude, expected.latitude, tolerance);
        EXPECT_NEAR(actual.longitude, expected.longitude, tolerance);
    }

    void drag(QPoint from, QPoint to, int steps, int stepMs)
    {
        QTest::mousePress(window.get(), Qt::LeftButton, {}, from);
        for (int i = 1; i <= steps; ++i) {
            QTest::qWait(stepMs);
            QTest::mouseMove(window.get(), from + (to - from) * i / steps);
        }
    }

    // Qt Quick holds touch moves back until the next frame, as on a real screen.
    static void frame() { QTest::qWait(32); }

    std::unique_ptr<QQuickWindow> window;
    MapView *map = nullptr; // owned by the window's content item
    FakeTileSource *tiles = nullptr;
    std::unique_ptr<QPointingDevice> touchscreen{QTest::createTouchDevice()};
};

// ---- region and conversions -------------------------------------------------------------------

struct PlaceCase
{
    const char *name;
    double latitude;
    double longitude;
};

class MapViewPlaces : public MapViewTest, public ::testing::WithParamInterface<PlaceCase>
{
};

TEST_P(MapViewPlaces, ThePointCentredIsInTheMiddleAndConvertsBack)
{
    const PlaceCase &c = GetParam();
    map->setCenter(c.latitude, c.longitude);
    expectSameCoordinate(map->centerCoordinate(), {c.latitude, c.longitude}, 1e-9);
    const QPointF middle = map->pointFor(c.latitude, c.longitude);
    EXPECT_NEAR(middle.x(), 200.0, 1e-6);
    EXPECT_NEAR(middle.y(), 200.0, 1e-6);
    for (const QPointF point : {QPointF(0, 0), QPointF(399, 17), QPointF(123.5, 321.25)})
        EXPECT_NEAR(QLineF(map->pointForCoordinate(at(point)), point).length(), 0.0, 1e-6);
}

INSTANTIATE_TEST_SUITE_P(Places, MapViewPlaces,
                         ::testing::Values(PlaceCase{"Origin", 0.0, 0.0},
                                           PlaceCase{"Seattle", 47.620496, -122.34927},
                                           PlaceCase{"NearAntimeridianEast", -17.7, 179.99},
                                           PlaceCase{"NearAntimeridianWest", 65.0, -179.95},
                                           PlaceCase{"FarSouth", -84.9, 170.0}),
                         [](const auto &info) { return std::string(info.param.name); });

TEST_F(MapViewTest, TheVisibleRectangleIsTheViewSizeOverTheZoomScale)
{
    const MapRect rect = map->visibleMapRect();
    EXPECT_DOUBLE_EQ(rect.width, 400.0 / map->zoomScale());
    EXPECT_DOUBLE_EQ(rect.height, 400.0 / map->zoomScale());
    EXPECT_DOUBLE_EQ(rect.midX(), map->centerMapPoint().x);
    EXPECT_DOUBLE_EQ(map->zoomLevel(), 10.0);
}

TEST_F(MapViewTest, NoSpaceShowsBeyondTheTopOrBottomOfTheWorld)
{
    map->setCenter(89.0, 0.0);
    EXPECT_NEAR(map->visibleMapRect().minY(), 0.0, 1e-6);
    EXPECT_LT(map->centerLatitude(), 85.06);
    map->setCenter(-89.0, 0.0);
    EXPECT_NEAR(map->visibleMapRect().maxY(), W, 1e-6);
    // Zoomed out as far as it goes, the world just fills the view's height.
    map->setZoomScale(1e-12);
    EXPECT_DOUBLE_EQ(map->zoomScale(), 400.0 / W);
    EXPECT_DOUBLE_EQ(map->visibleMapRect().minY(), 0.0);
    map->setZoomScale(1e9);
    EXPECT_DOUBLE_EQ(map->zoomScale(), MapView::maximumZoomScale());
}

TEST_F(MapViewTest, BadNumbersLeaveTheRegionAlone)
{
    const MapPoint center = map->centerMapPoint();
    const double zoom = map->zoomScale();
    map->setCenter(std::nan(""), 3.0);
    map->setZoomScale(std::nan(""));
    map->setZoomScale(-1.0);
    map->setZoomLevel(INFINITY);
    map->zoomBy(0.0, {10, 10}, false);
    EXPECT_EQ(map->centerMapPoint(), center);
    EXPECT_EQ(map->zoomScale(), zoom);
}

TEST_F(MapViewTest, InstantAndAnimatedMovesAnnounceTheirStartAndEndOnce)
{
    QSignalSpy will(map, &MapView::regionWillChange);
    QSignalSpy did(map, &MapView::regionDidChange);
    map->setCenter(10.0, 20.0, false);
    EXPECT_EQ(will.count(), 1);
    EXPECT_EQ(did.count(), 1);
    EXPECT_FALSE(did.last().at(0).toBool());

    map->setCenter(11.0, 21.0, true);
    EXPECT_EQ(will.count(), 2);
    EXPECT_TRUE(will.last().at(0).toBool());
    EXPECT_EQ(did.count(), 1);
    EXPECT_FALSE(map->isSettled());
    ASSERT_TRUE(waitUntil([&] { return did.count() == 2; }));
    expectSameCoordinate(map->centerCoordinate(), {11.0, 21.0}, 1e-9);
}

TEST_F(MapViewTest, AnAnimatedMoveTakesTheShortWayAcrossTheAntimeridian)
{
    map->setCenter(0.0, 179.0);
    map->setCenter(0.0, -179.0, true);
    double farthest = 0.0;
    QObject::connect(map, &MapView::regionChanged, map, [&] {
        farthest = std::max(farthest, std::abs(std::abs(map->centerLongitude()) - 180.0));
    });
    ASSERT_TRUE(waitUntil([&] { return map->isSettled(); }));
    EXPECT_NEAR(map->centerLongitude(), -179.0, 1e-9);
    EXPECT_LE(farthest, 1.0 + 1e-9); // never further than a degree from the line
}

// ---- gestures ---------------------------------------------------------------------------------------

TEST_F(MapViewTest, ADragKeepsThePointUnderTheFingerAndWrapsAroundTheWorld)
{
    map->setCenter(0.0, 179.99);
    const QPoint from(200, 200);
    const Coordinate grabbed = at(from);
    const QPoint to(40, 260);
    drag(from, to, 8, 20);
    QTest::qWait(120); // rest before lifting: no fling
    expectSameCoordinate(at(to), grabbed, 1e-7);
    QTest::mouseRelease(window.get(), Qt::LeftButton, {}, to);
    ASSERT_TRUE(waitUntil([&] { return map->isSettled(); }));
    expectSameCoordinate(at(to), grabbed, 1e-7);
    // The centre went east across the line and reads as a western longitude.
    EXPECT_LT(map->centerLongitude(), -179.0);
    EXPECT_GE(map->centerMapPoint().x, 0.0);
    EXPECT_LT(map->centerMapPoint().x, W);
}

TEST_F(MapViewTest, AQuickDragFlingsTheMapOnAfterRelease)
{
    QSignalSpy did(map, &MapView::regionDidChange);
    drag({300, 200}, {100, 200}, 5, 10);
    QTest::mouseRelease(window.get(), Qt::LeftButton, {}, {100, 200});
    const MapPoint atRelease = map->centerMapPoint();
    ASSERT_TRUE(waitUntil([&] { return did.count() == 1; }));
    // Dragged right to left: the map keeps showing more of the east.
    EXPECT_GT(map->centerMapPoint().x - atRelease.x, 50.0 / map->zoomScale());
    EXPECT_NEAR(map->centerMapPoint().y, atRelease.y, 1e-6);
}

TEST_F(MapViewTest, APinchZoomsAboutTheFingersAndALiftedFingerDoesNotMoveTheMap)
{
    const Coordinate middle = at({200, 200});
    const double zoom = map->zoomScale();
    QTest::touchEvent(window.get(), touchscreen.get()).press(0, {150, 200}).press(1, {250, 200});
    frame();
    QTest::touchEvent(window.get(), touchscreen.get()).move(0, {125, 200}).move(1, {275, 200});
    frame();
    QTest::touchEvent(window.get(), touchscreen.get()).move(0, {100, 200}).move(1, {300, 200});
    frame();
    EXPECT_NEAR(map->zoomScale(), 2.0 * zoom, 1e-12);
    expectSameCoordinate(at({200, 200}), middle, 1e-7);

    // Lift one finger: the centroid jumps to the other, the map must not.
    const Coordinate underFinger = at({300, 200});
    QTest::touchEvent(window.get(), touchscreen.get()).release(0, {100, 200}).move(1, {300, 200});
    frame();
    expectSameCoordinate(at({300, 200}), underFinger, 1e-9);
    QTest::touchEvent(window.get(), touchscreen.get()).move(1, {310, 215});
    frame();
    expectSameCoordinate(at({310, 215}), underFinger, 1e-7);
    QTest::touchEvent(window.get(), touchscreen.get()).release(1, {310, 215});
    frame();
}

TEST_F(MapViewTest, TheWheelZoomsAboutTheCursor)
{
    const QPointF cursor(80, 330);
    const Coordinate under = at(cursor);
    const double zoom = map->zoomScale();
    QWheelEvent wheel(cursor, window->mapToGlobal(cursor), QPoint(), QPoint(0, 240), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(window.get(), &wheel);
    EXPECT_NEAR(map->zoomScale(), 2.0 * zoom, 1e-12);
    expectSameCoordinate(at(cursor), under, 1e-7);
    EXPECT_FALSE(map->isSettled()); // more notches may follow
    ASSERT_TRUE(waitUntil([&] { return map->isSettled(); }));
}

TEST_F(MapViewTest, ADoubleTapZoomsInOneLevelAboutTheTap)
{
    const QPoint tap(120, 90);
    const Coordinate under = at(tap);
    const double zoom = map->zoomScale();
    QTest::mouseClick(window.get(), Qt::LeftButton, {}, tap);
    QTest::qWait(30);
    QTest::mouseClick(window.get(), Qt::LeftButton, {}, tap);
    ASSERT_TRUE(waitUntil([&] { return map->isSettled() && map->zoomScale() != zoom; }));
    EXPECT_NEAR(map->zoomScale(), 2.0 * zoom, 1e-12);
    expectSameCoordinate(at(tap), under, 1e-7);
}

TEST_F(MapViewTest, ASingleTapLeavesTheMapAlone)
{
    const MapPoint center = map->centerMapPoint();
    QTest::mouseClick(window.get(), Qt::LeftButton, {}, {50, 50});
    QTest::qWait(400);
    EXPECT_EQ(map->centerMapPoint(), center);
}

TEST_F(MapViewTest, ALongPressGivesTheCoordinateUnderTheFingerAndDoesNotPan)
{
    QSignalSpy pressed(map, &MapView::longPressed);
    const QPoint point(310, 75);
    const Coordinate expected = at(point);
    QTest::touchEvent(window.get(), touchscreen.get()).press(0, point);
    frame();
    ASSERT_TRUE(waitUntil([&] { return pressed.count() == 1; }));
    EXPECT_NEAR(pressed.first().at(0).toDouble(), expected.latitude, 1e-9);
    EXPECT_NEAR(pressed.first().at(1).toDouble(), expected.longitude, 1e-9);
    const MapPoint center = map->centerMapPoint();
    QTest::touchEvent(window.get(), touchscreen.get()).move(0, point + QPoint(60, 40));
    frame();
    QTest::touchEvent(window.get(), touchscreen.get()).release(0, point + QPoint(60, 40));
    frame();
    EXPECT_EQ(map->centerMapPoint(), center);
    EXPECT_EQ(pressed.count(), 1);
}

TEST_F(MapViewTest, MovingOrASecondFingerBeforeTheHoldEndsIsNoLongPress)
{
    QSignalSpy pressed(map, &MapView::longPressed);
    QTest::touchEvent(window.get(), touchscreen.get()).press(0, {100, 100});
    frame();
    QTest::touchEvent(window.get(), touchscreen.get()).move(0, {140, 100});
    frame();
    QTest::qWait(150);
    QTest::touchEvent(window.get(), touchscreen.get()).release(0, {140, 100});
    frame();
    QTest::touchEvent(window.get(), touchscreen.get()).press(0, {100, 100});
    frame();
    QTest::touchEvent(window.get(), touchscreen.get()).move(0, {100, 100}).press(1, {200, 200});
    frame();
    QTest::qWait(150);
    QTest::touchEvent(window.get(), touchscreen.get()).release(0, {100, 100}).release(1, {200, 200});
    frame();
    EXPECT_EQ(pressed.count(), 0);
}

// ---- tiles -----------------------------------------------------------------------------------------

TEST_F(MapViewTest, TilesComeAtWholeLevelsDuringAZoomAndAtTheExactScaleAfter)
{
    QSignalSpy idle(map, &MapView::idleChanged);
    tiles->deliverAll();
    ASSERT_TRUE(map->isIdle());
    const QPointF cursor(200, 200);
    QWheelEvent wheel(cursor, window->mapToGlobal(cursor), QPoint(), QPoint(0, 72), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(window.get(), &wheel);
    EXPECT_FALSE(map->isIdle());
    EXPECT_DOUBLE_EQ(map->baseLayer()->tileScale(), std::exp2(10.0 - 20.0));
    ASSERT_TRUE(waitUntil([&] { return map->isSettled(); }));
    EXPECT_DOUBLE_EQ(map->baseLayer()->tileScale(), map->zoomScale());
    EXPECT_FALSE(map->isIdle());
    tiles->deliverAll();
    EXPECT_TRUE(map->isIdle());
}

// ---- what the user sees ------------------------------------------------------------------------------

QColor pixel(const QImage &image, QPointF point)
{
    return image.pixelColor(point.toPoint());
}

TEST_F(MapViewTest, TheWindowShowsTilesThePinAndTheUserDot)
{
    tiles->deliverAll(QColor(0x40, 0xa0, 0x40));
    const MapPointAnnotation pin({50.0, 10.0});
    map->addAnnotation(&pin);
    map->setUserLocation(Coordinate{49.99, 10.05}, 5000.0); // about 50 points across
    map->setShowsUserLocation(true);
    QTest::qWait(700); // the pin's drop

    const QImage shot = window->grabWindow();
    const double ratio = shot.width() / 400.0;
    const auto px = [&](QPointF p) { return pixel(shot, p * ratio); };
    // The pin's head sits above its tip at the centre.
    const QColor head = px({200, 200 - 30});
    EXPECT_GT(head.red(), 180);
    EXPECT_LT(head.green(), 90);
    // The dot is blue in the middle, the accuracy circle a blue tint over the tiles.
    const QPointF dot = map->pointFor(49.99, 10.05);
    EXPECT_GT(px(dot).blue(), 180);
    EXPECT_LT(px(dot).red(), 80);
    const QColor tint = px(dot + QPointF(0, 15));
    EXPECT_GT(tint.blue(), 0x40);
    // Away from both: the tile as delivered.
    EXPECT_EQ(px({20, 380}), QColor(0x40, 0xa0, 0x40));

    map->setShowsUserLocation(false);
    map->removeAnnotation(&pin);
    QTest::qWait(50);
    const QImage bare = window->grabWindow();
    EXPECT_EQ(pixel(bare, dot * ratio), QColor(0x40, 0xa0, 0x40));
    EXPECT_EQ(pixel(bare, QPointF(200, 170) * ratio), QColor(0x40, 0xa0, 0x40));
}

TEST_F(MapViewTest, ThreadedTilesReachTheScreen)
{
    map->setBaseTileSource(std::make_unique<RenderedTileSource>([](const TileKey &key, double ratio) {
        return FakeTileSource::image(key.column % 2 ? Qt::darkCyan : Qt::darkMagenta, ratio);
    }));
    ASSERT_TRUE(waitUntil([&] { return map->isIdle(); }));
    QTest::qWait(50);
    const QImage shot = window->grabWindow();
    int cyan = 0;
    int magenta = 0;
    for (int x = 0; x < shot.width(); x += 7) {
        const QColor c = shot.pixelColor(x, shot.height() / 2);
        cyan += c == QColor(Qt::darkCyan);
        magenta += c == QColor(Qt::darkMagenta);
    }
    EXPECT_GT(cyan, 0);
    EXPECT_GT(magenta, 0);
}

} // namespace
