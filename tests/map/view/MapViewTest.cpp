#include "MapView.h"
#include "FakeTileSource.h"
#include "GreatCircleOverlay.h"
#include "RenderedTileSource.h"
#include "TestTable.h"

#include <QPointingDevice>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace {

constexpr double W = mapWorldWidth;

// A window of 400 × 400 points holding one map, its basemap a fake the test answers.
class MapViewTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        window.resize(400, 400);
        map = new MapView(window.contentItem());
        map->setSize(QSizeF(400, 400));
        auto owned = std::make_unique<FakeTileSource>();
        tiles = owned.get();
        map->setBaseTileSource(std::move(owned));
        map->setLongPressInterval(60);
        map->setZoomLevel(10.0);
        map->setCenter(50.0, 10.0);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    // The coordinate under a view point, as (latitude, longitude).
    Coordinate at(QPointF point) const { return map->coordinateForPoint(point); }

    void expectSameCoordinate(Coordinate actual, Coordinate expected, double tolerance = 1e-7)
    {
        EXPECT_NEAR(actual.latitude, expected.latitude, tolerance);
        EXPECT_NEAR(actual.longitude, expected.longitude, tolerance);
    }

    void drag(QPoint from, QPoint to, int steps, int stepMs)
    {
        QTest::mousePress(&window, Qt::LeftButton, {}, from);
        for (int i = 1; i <= steps; ++i) {
            QTest::qWait(stepMs);
            QTest::mouseMove(&window, from + (to - from) * i / steps);
        }
    }

    // A wheel turned by a number of eighths of a degree over a view point.
    void wheel(QPointF cursor, int angle)
    {
        QWheelEvent event(cursor, window.mapToGlobal(cursor), QPoint(), QPoint(0, angle),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&window, &event);
    }

    QTest::QTouchEventSequence touch() { return QTest::touchEvent(&window, touchscreen.get()); }
    // Sends the touches; Qt Quick holds moves back until the next frame, as on a real screen.
    static void frame(QTest::QTouchEventSequence &events)
    {
        events.commit();
        QTest::qWait(32);
    }

    QQuickWindow window;
    MapView *map = nullptr; // owned by the window's content item
    FakeTileSource *tiles = nullptr;
    std::unique_ptr<QPointingDevice> touchscreen{QTest::createTouchDevice()};
};

// ---- region and conversions -------------------------------------------------------------------

TEST_F(MapViewTest, ThePointCentredIsInTheMiddleAndEveryPointConvertsBack)
{
    const MapRect rect = map->visibleMapRect();
    EXPECT_DOUBLE_EQ(rect.width, 400.0 / map->zoomScale());
    EXPECT_DOUBLE_EQ(rect.height, 400.0 / map->zoomScale());
    EXPECT_DOUBLE_EQ(rect.midX(), map->centerMapPoint().x);
    for (const QStringList &row : testTable("map/map-view-places.tsv")) {
        const Coordinate place{row[0].toDouble(), row[1].toDouble()};
        SCOPED_TRACE(place.longitude);
        map->setCenter(place.latitude, place.longitude);
        expectSameCoordinate(map->centerCoordinate(), place, 1e-9);
        EXPECT_NEAR(QLineF(map->pointFor(place.latitude, place.longitude), {200, 200}).length(),
                    0.0, 1e-6);
        for (const QPointF point : {QPointF(0, 0), QPointF(399, 17), QPointF(123.5, 321.25)})
            EXPECT_NEAR(QLineF(map->pointForCoordinate(at(point)), point).length(), 0.0, 1e-6);
    }
}

TEST_F(MapViewTest, BadNumbersLeaveTheRegionAloneAndNoSpaceShowsBeyondTheWorld)
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

TEST_F(MapViewTest, MovesAnnounceTheirStartAndEndOnceAndAnimateTheShortWayRound)
{
    QSignalSpy will(map, &MapView::regionWillChange);
    QSignalSpy did(map, &MapView::regionDidChange);
    map->setCenter(0.0, 179.0, false);
    EXPECT_EQ(will.count(), 1);
    EXPECT_EQ(did.count(), 1);
    EXPECT_FALSE(did.last().at(0).toBool());

    map->setCenter(0.0, -179.0, true);
    EXPECT_EQ(will.count(), 2);
    EXPECT_TRUE(will.last().at(0).toBool());
    EXPECT_EQ(did.count(), 1);
    EXPECT_FALSE(map->isSettled());
    double farthest = 0.0;
    QObject::connect(map, &MapView::regionChanged, map, [&] {
        farthest = std::max(farthest, std::abs(std::abs(map->centerLongitude()) - 180.0));
    });
    ASSERT_TRUE(QTest::qWaitFor([&] { return did.count() == 2; }));
    expectSameCoordinate(map->centerCoordinate(), {0.0, -179.0}, 1e-9);
    EXPECT_LE(farthest, 1.0 + 1e-9); // across the antimeridian, never a degree from it
}

// ---- gestures -----------------------------------------------------------------------------------

TEST_F(MapViewTest, ADragKeepsThePointUnderTheFingerWrapsAroundTheWorldAndAQuickOneFlings)
{
    map->setCenter(0.0, 179.99);
    const QPoint from(200, 200);
    const Coordinate grabbed = at(from);
    const QPoint to(40, 260);
    drag(from, to, 8, 20);
    QTest::qWait(120); // rest before lifting: no fling
    expectSameCoordinate(at(to), grabbed);
    QTest::mouseRelease(&window, Qt::LeftButton, {}, to);
    ASSERT_TRUE(QTest::qWaitFor([&] { return map->isSettled(); }));
    expectSameCoordinate(at(to), grabbed);
    // The centre went east across the line and reads as a western longitude.
    EXPECT_LT(map->centerLongitude(), -179.0);
    EXPECT_GE(map->centerMapPoint().x, 0.0);
    EXPECT_LT(map->centerMapPoint().x, W);

    // A quick drag flings the map on after release: right to left, it shows more of the east.
    drag({300, 200}, {100, 200}, 5, 10);
    QTest::mouseRelease(&window, Qt::LeftButton, {}, {100, 200});
    const MapPoint atRelease = map->centerMapPoint();
    ASSERT_TRUE(QTest::qWaitFor([&] { return map->isSettled(); }));
    EXPECT_GT(map->centerMapPoint().x - atRelease.x, 50.0 / map->zoomScale());
    EXPECT_NEAR(map->centerMapPoint().y, atRelease.y, 1e-6);
}

TEST_F(MapViewTest, APinchZoomsAboutTheFingersAndALiftedFingerDoesNotMoveTheMap)
{
    const Coordinate middle = at({200, 200});
    const double zoom = map->zoomScale();
    frame(touch().press(0, {150, 200}).press(1, {250, 200}));
    frame(touch().move(0, {125, 200}).move(1, {275, 200}));
    frame(touch().move(0, {100, 200}).move(1, {300, 200}));
    EXPECT_NEAR(map->zoomScale(), 2.0 * zoom, 1e-12);
    expectSameCoordinate(at({200, 200}), middle);

    // Lift one finger: the centroid jumps to the other, the map must not.
    const Coordinate underFinger = at({300, 200});
    frame(touch().release(0, {100, 200}).move(1, {300, 200}));
    expectSameCoordinate(at({300, 200}), underFinger, 1e-9);
    frame(touch().move(1, {310, 215}));
    expectSameCoordinate(at({310, 215}), underFinger);
    frame(touch().release(1, {310, 215}));
}

TEST_F(MapViewTest, TheWheelZoomsAboutTheCursorWithTilesAtWholeLevelsUntilItSettles)
{
    tiles->deliverAll();
    ASSERT_TRUE(map->isIdle());
    const QPointF cursor(80, 330);
    const Coordinate under = at(cursor);
    const double zoom = map->zoomScale();
    wheel(cursor, 240);
    EXPECT_NEAR(map->zoomScale(), 2.0 * zoom, 1e-12);
    expectSameCoordinate(at(cursor), under);
    EXPECT_FALSE(map->isSettled()); // more notches may follow
    EXPECT_FALSE(map->isIdle());
    // Level 11.3 while zooming: tiles of level 11.
    wheel(cursor, 72);
    EXPECT_DOUBLE_EQ(map->baseLayer()->tileScale(), std::exp2(11.0 - 20.0));
    ASSERT_TRUE(QTest::qWaitFor([&] { return map->isSettled(); }));
    EXPECT_DOUBLE_EQ(map->baseLayer()->tileScale(), map->zoomScale());
    EXPECT_FALSE(map->isIdle());
    tiles->deliverAll();
    EXPECT_TRUE(map->isIdle());
}

TEST_F(MapViewTest, ASingleTapLeavesTheMapAloneADoubleTapZoomsInOneLevelAboutIt)
{
    const MapPoint center = map->centerMapPoint();
    QTest::mouseClick(&window, Qt::LeftButton, {}, {50, 50});
    QTest::qWait(400);
    EXPECT_EQ(map->centerMapPoint(), center);

    const QPoint tap(120, 90);
    const Coordinate under = at(tap);
    const double zoom = map->zoomScale();
    QTest::mouseClick(&window, Qt::LeftButton, {}, tap);
    QTest::qWait(30);
    QTest::mouseClick(&window, Qt::LeftButton, {}, tap);
    ASSERT_TRUE(QTest::qWaitFor([&] { return map->isSettled() && map->zoomScale() != zoom; }));
    EXPECT_NEAR(map->zoomScale(), 2.0 * zoom, 1e-12);
    expectSameCoordinate(at(tap), under);
}

TEST_F(MapViewTest, OnlyAStillSingleFingerHeldIsALongPressItGivesItsCoordinateAndDoesNotPan)
{
    QSignalSpy pressed(map, &MapView::longPressed);
    // Moving, or a second finger, before the hold ends.
    frame(touch().press(0, {100, 100}));
    frame(touch().move(0, {140, 100}));
    QTest::qWait(150);
    frame(touch().release(0, {140, 100}));
    frame(touch().press(0, {100, 100}));
    frame(touch().move(0, {100, 100}).press(1, {200, 200}));
    QTest::qWait(150);
    frame(touch().release(0, {100, 100}).release(1, {200, 200}));
    EXPECT_EQ(pressed.count(), 0);

    const QPoint point(310, 75);
    const Coordinate expected = at(point);
    frame(touch().press(0, point));
    ASSERT_TRUE(QTest::qWaitFor([&] { return pressed.count() == 1; }));
    EXPECT_NEAR(pressed.first().at(0).toDouble(), expected.latitude, 1e-9);
    EXPECT_NEAR(pressed.first().at(1).toDouble(), expected.longitude, 1e-9);
    const MapPoint center = map->centerMapPoint();
    frame(touch().move(0, point + QPoint(60, 40)));
    frame(touch().release(0, point + QPoint(60, 40)));
    EXPECT_EQ(map->centerMapPoint(), center);
    EXPECT_EQ(pressed.count(), 1);
}

// ---- what the user sees -------------------------------------------------------------------------

TEST_F(MapViewTest, TheWindowShowsTilesDrawnOnOtherThreadsThePinAndTheUserDot)
{
    const QColor green(0x40, 0xa0, 0x40);
    // A source set while the map is on screen, answering from its worker threads.
    map->setBaseTileSource(std::make_unique<RenderedTileSource>(
        [green](const TileKey &, double ratio) { return FakeTileSource::image(green, ratio); }));
    ASSERT_TRUE(QTest::qWaitFor([&] { return map->isIdle(); }));
    const MapPointAnnotation pin({50.0, 10.0});
    map->addAnnotation(&pin);
    map->setUserLocation(Coordinate{49.99, 10.05}, 5000.0); // about 50 points across
    map->setShowsUserLocation(true);
    QTest::qWait(700); // the pin's drop

    QImage shot = window.grabWindow();
    const double ratio = shot.width() / 400.0;
    const auto px = [&](QPointF p) { return shot.pixelColor((p * ratio).toPoint()); };
    // The pin's head sits above its tip at the centre.
    EXPECT_GT(px({200, 170}).red(), 180);
    EXPECT_LT(px({200, 170}).green(), 90);
    // The dot is blue in the middle, the accuracy circle a blue tint over the tiles.
    const QPointF dot = map->pointFor(49.99, 10.05);
    EXPECT_GT(px(dot).blue(), 180);
    EXPECT_LT(px(dot).red(), 80);
    EXPECT_GT(px(dot + QPointF(0, 15)).blue(), 0x40);
    // Away from both: the tile as delivered.
    EXPECT_EQ(px({20, 380}), green);

    map->setShowsUserLocation(false);
    map->removeAnnotation(&pin);
    QTest::qWait(50);
    shot = window.grabWindow();
    EXPECT_EQ(px(dot), green);
    EXPECT_EQ(px({200, 170}), green);
}

// The line to a target follows the map and breaks where it crosses from one copy of the world
// to the next, rather than striking back across the whole map.
TEST_F(MapViewTest, TheWayToTheTargetBreaksAtTheSeamOnly)
{
    map->setZoomLevel(1.0);
    map->setCenter(0.0, 0.0);
    GreatCircleOverlay overlay;
    overlay.setMap(map);
    overlay.setFromLongitude(170.0);
    overlay.setToLongitude(-170.0);
    EXPECT_TRUE(overlay.strokes().empty());
    overlay.setActive(true);
    const auto strokes = overlay.strokes();
    ASSERT_EQ(strokes.size(), 2u);
    EXPECT_EQ(strokes[0].front(), map->pointFor(0.0, 170.0));
    EXPECT_EQ(strokes[1].back(), map->pointFor(0.0, -170.0));
    EXPECT_GT(strokes[0].back().x(), 400.0);
    EXPECT_LT(strokes[1].front().x(), 0.0);
    // Seen from the antimeridian the same way is one line, and it follows a pan.
    map->setCenter(0.0, 180.0);
    ASSERT_EQ(overlay.strokes().size(), 1u);
    EXPECT_EQ(overlay.strokes()[0].front(), map->pointFor(0.0, 170.0));
}

} // namespace
