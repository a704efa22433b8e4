#include "AppearanceSchedule.h"
#include "AppearanceSettingsViewController.h"
#include "ApplicationStateSystem.h"
#include "CoordinateFormatSettingsViewController.h"
#include "CoordinatePanelViewController.h"
#include "CrossingAlertSettingsViewController.h"
#include "DistanceFormatSettingsViewController.h"
#include "FixAgeController.h"
#include "GridPositionController.h"
#include "LocationTrackingSystem.h"
#include "MapSource.h"
#include "MapSourceSettingsViewController.h"
#include "NotificationCenter.h"
#include "PreferencesSystem.h"
#include "ProofSnapshotController.h"
#include "RootCoordinatePanelController.h"
#include "RootViewController.h"
#include "ScriptableLocationManager.h"
#include "SettingsViewController.h"
#include "StationSettingsViewController.h"
#include "TargetController.h"
#include "TargetSystem.h"
#include "UserDefaults.h"
#include "VeltorFormatSettingsViewController.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace {

class ScreenControllersTest : public testing::Test
{
protected:
    QTemporaryDir m_dir;
    UserDefaults m_defaults{m_dir.filePath(QStringLiteral("settings.ini"))};
    NotificationCenter m_center;
    PreferencesSystem m_preferences{m_defaults, m_center,
                                    QLocale(QLocale::English, QLocale::UnitedStates)};
    ApplicationStateSystem m_state{m_defaults};
    ScriptableLocationManager m_manager;
    LocationTrackingSystem m_tracking{m_manager, m_state};
};

TEST_F(ScreenControllersTest, PanelFollowsThePointAndOnlyItsOwnSettings)
{
    auto panel = std::make_unique<CoordinatePanelViewController>(m_state, m_preferences);
    QSignalSpy latitude(panel.get(), &CoordinatePanelViewController::latitudeChanged);
    QSignalSpy longitude(panel.get(), &CoordinatePanelViewController::longitudeChanged);
    QSignalSpy veltor(panel.get(), &CoordinatePanelViewController::veltorChanged);
    const auto changes = [&] {
        return std::tuple(latitude.count(), longitude.count(), veltor.count());
    };

    m_state.setCoordinate({-33.5, 0.0});
    EXPECT_EQ(panel->latitudeText(), QString::fromUtf8("33° 30′ 0″ S"));
    EXPECT_EQ(panel->longitudeText(), QString::fromUtf8("0° 0′ 0″ E"));
    EXPECT_EQ(changes(), std::tuple(1, 1, 1));

    // The precision changes only the locators.
    m_preferences.setVeltorFormat(VeltorFormat::FourCharacters);
    EXPECT_EQ(panel->veltorText(), QStringLiteral("JF06"));
    EXPECT_EQ(changes(), std::tuple(1, 1, 2));

    // The notation changes latitude and longitude, not the locator.
    m_preferences.setCoordinateFormat(CoordinateFormat::DegreesDecimalMinutes);
    EXPECT_EQ(panel->latitudeText(), QString::fromUtf8("33° 30.0000′ S"));
    EXPECT_EQ(panel->longitudeText(), QString::fromUtf8("0° 0.0000′ E"));
    EXPECT_EQ(changes(), std::tuple(2, 2, 2));

    // Other settings leave the panel alone.
    m_preferences.setShowGrid(false);
    m_preferences.setDistanceFormat(DistanceFormat::Metric);
    EXPECT_EQ(changes(), std::tuple(2, 2, 2));

    // Neither a point nor a setting may reach the destroyed panel.
    panel.reset();
    m_state.setCoordinate({1, 2});
    m_preferences.setVeltorFormat(VeltorFormat::TwoCharacters);
    m_preferences.setCoordinateFormat(CoordinateFormat::DecimalDegrees);
}

TEST_F(ScreenControllersTest, GridPositionShowsWhenAskedAndFollowsPointPrecisionAndUnits)
{
    const GridPositionController strip(m_state, m_preferences);
    EXPECT_FALSE(strip.shown());
    SettingsViewController settings(m_preferences);
    settings.toggleShowGridPosition();
    EXPECT_TRUE(m_preferences.showGridPosition());
    EXPECT_TRUE(strip.shown());

    m_preferences.setDistanceFormat(DistanceFormat::Metric);
    m_preferences.setVeltorFormat(VeltorFormat::FourCharacters);
    m_state.setCoordinate({60.5, 1.5});
    // In JP00 the east edge is nearest, JP10 lies across it, and the south-east corner is next;
    // numbers never part from their units.
    EXPECT_EQ(strip.edgeTexts().join(u'|').toStdString(),
              "N 56\u00a0km|S 56\u00a0km|E 27\u00a0km|W 82\u00a0km");
    EXPECT_EQ(std::tuple(strip.nearestSide(), strip.nearestCorner()), std::tuple(2, 2));
    EXPECT_EQ(strip.detailText().toStdString(),
              "Edge E 27\u00a0km → JP10 · Corner 62\u00a0km at 153°");
    EXPECT_TRUE(strip.accessibilityLabel().contains(QStringLiteral("with J P 1 0 beyond")));
    // A live fix is uncertain once its accuracy reaches over an edge (27478 m to the east one),
    // and past the corner it may be in any of the cells around.
    m_state.setCoordinateIsLiveTracked(true);
    const std::tuple<double, const char *, int> marks[] = {
        {27470, "", 0},
        {27490, "JP00, or JP10 within ±\u00a027\u00a0km", 1 << 2},
        {63000, "JP00, or JP01 or JO09 or JP10 or JO19 within ±\u00a063\u00a0km", 7}};
    for (const auto &[accuracy, mark, sides] : marks) {
        m_state.setCoordinateAccuracy(accuracy);
        EXPECT_EQ(strip.uncertainText().toStdString(), mark) << accuracy;
        EXPECT_EQ(strip.uncertainSides(), sides) << accuracy;
    }
    EXPECT_TRUE(strip.uncertainAccessibilityLabel().startsWith(
        QStringLiteral("Uncertain: J P 0 0, or J P 0 1 or ")));
    m_state.setCoordinateIsLiveTracked(false);
    EXPECT_FALSE(strip.uncertain());
    m_preferences.setDistanceFormat(DistanceFormat::Imperial);
    EXPECT_TRUE(strip.edgeTexts().first().endsWith(QStringLiteral("\u00a0mi")));

    // Near the pole the parallels shrink, so an edge to the side is nearer than the pole; at the
    // pole itself the pole is the edge, with nothing across it.
    m_preferences.setVeltorFormat(VeltorFormat::TwoCharacters);
    m_state.setCoordinate({89.9, 5.0});
    EXPECT_TRUE(strip.summaryText().startsWith(QStringLiteral("Edge W ")));
    EXPECT_TRUE(strip.detailText().contains(QStringLiteral(" → IR · Corner ")));
    m_state.setCoordinate({90.0, 5.0});
    EXPECT_TRUE(strip.detailText().contains(QStringLiteral(", the pole · Corner ")));
    EXPECT_EQ(strip.acrossText(), QString());

    settings.toggleShowGridPosition();
    EXPECT_FALSE(strip.shown());
}

TEST_F(ScreenControllersTest, TargetShowsTheWayThereAndIsKeptUntilCleared)
{
    TargetSystem targets(m_defaults);
    const TargetController way(m_state, m_preferences, targets);
    EXPECT_FALSE(way.shown());
    m_preferences.setDistanceFormat(DistanceFormat::Metric);
    m_preferences.setVeltorFormat(VeltorFormat::SixCharacters);
    m_state.setCoordinate({52.520833333333336, 13.375});
    TargetController(m_state, m_preferences, targets).setCurrentPointAsTarget();
    // From JN58td to JO62qm: GeodSolve(1) gives 502310.959 m at 13.69°, and the long path
    // 19502419.696 m at -166.99° plus half a meridian, 20003931.459 m.
    m_state.setCoordinate({48.145833333333336, 11.625});
    // The distance large with its unit apart, the arrow's bearing, the long path and the
    // contest distance beside them.
    EXPECT_EQ(std::tuple(way.locator(), way.distanceValue(), way.distanceUnit(), way.bearingText()),
              std::tuple(QStringLiteral("JO62qm"), QStringLiteral("502"), QStringLiteral("km"),
                         QStringLiteral("14°")));
    EXPECT_NEAR(way.bearing(), 13.69, 0.01);
    EXPECT_EQ(way.secondaryText().toStdString(),
              "Long path 39,506\u00a0km at 193° · Contest 503\u00a0km");
    EXPECT_EQ(way.summaryText().toStdString(), "Target 502\u00a0km");
    EXPECT_TRUE(
        way.accessibilityLabel().startsWith(QStringLiteral("Target J O 6 2 q m: 502\u00a0km")));
    // Kept across launches, and gone once cleared.
    EXPECT_EQ(TargetSystem(m_defaults).target(), (Coordinate{52.520833333333336, 13.375}));
    targets.setTarget(std::nullopt);
    EXPECT_FALSE(way.shown());
    EXPECT_EQ(TargetSystem(m_defaults).target(), std::nullopt);
    // A stored target that is not a point on the globe is no target.
    for (const char *stored : {"91,0", "nan,0", "12", "a,b"}) {
        m_defaults.setObject(QString::fromLatin1(stored), targets.targetKey);
        EXPECT_EQ(TargetSystem(m_defaults).target(), std::nullopt) << stored;
    }
}

TEST_F(ScreenControllersTest, ProofIsSavedNamedByTheTimeOrSaysWhyNot)
{
    const QDateTime when(QDate(2026, 6, 20), QTime(14, 5, 9), Qt::UTC);
    ProofSnapshotController proof(m_state, m_preferences, &m_manager,
                                  m_dir.filePath(QStringLiteral("proofs")), [&] { return when; });
    m_manager.report({ReceiverStatus::ThreeD, 8, 11});
    m_state.setCoordinate({48.1459, 11.6251});
    m_state.setCoordinateIsLiveTracked(true);
    m_state.setCoordinateAccuracy(4.0);
    ASSERT_TRUE(proof.save());
    QFile record(m_dir.filePath(QStringLiteral("proofs/veltor-20260620-140509Z.txt")));
    ASSERT_TRUE(record.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(record.readAll());
    for (const char *line : {"Time (UTC): 2026-06-20T14:05:09Z", "48° 8′ 45″ N, 11° 37′ 30″ E",
                             "48° 8.7540′ N, 11° 37.5060′ E", "48.1459° N, 11.6251° E",
                             "48.1459000, 11.6251000", "Locator: JN, JN58, JN58td, JN58td55",
                             "accuracy 4.0 m", "Fix: 3D; satellites used: 8; in view: 11",
                             "Position in JN58td55: ", "where JN58td55, "}) {
        EXPECT_TRUE(text.contains(QString::fromUtf8(line))) << line;
    }
    EXPECT_TRUE(proof.message().contains(QStringLiteral("veltor-20260620-140509Z")));

    // A folder that cannot be made: a clear message, nothing claimed.
    QFile(m_dir.filePath(QStringLiteral("file"))).open(QIODevice::WriteOnly);
    ProofSnapshotController blocked(m_state, m_preferences, nullptr,
                                    m_dir.filePath(QStringLiteral("file/proofs")),
                                    [&] { return when; });
    EXPECT_FALSE(blocked.save());
    EXPECT_TRUE(blocked.message().startsWith(QStringLiteral("Cannot save the proof in ")));
}

TEST_F(ScreenControllersTest, ALiveFixOlderThanFiveSecondsIsShownStaleAndThePointKept)
{
    qint64 now = 1000;
    FixAgeController age(m_state, &m_tracking, [&] { return now; });
    m_state.setCoordinateIsLiveTracked(true);
    // The receiver's own word on its fix, where it gives one.
    EXPECT_EQ(age.receiverText(), QString());
    m_manager.report({ReceiverStatus::ThreeD, 8, 11});
    EXPECT_EQ(age.receiverText().toStdString(), "3D fix · 8 of 11 satellites");
    m_manager.report({ReceiverStatus::TwoD, 3, -1});
    EXPECT_EQ(age.receiverAccessibilityLabel(), QStringLiteral("2D fix"));
    m_state.setCoordinate({51.5, -0.1});
    const std::pair<qint64, const char *> ages[] = {
        {5000, ""}, {5001, "Stale fix: 5\u00a0s old"}, {12400, "Stale fix: 12\u00a0s old"}};
    for (const auto &[after, text] : ages) {
        now = 1000 + after;
        age.refresh();
        EXPECT_EQ(age.text().toStdString(), text) << after;
    }
    EXPECT_EQ(age.accessibilityLabel(), QStringLiteral("Stale fix, 12 seconds old"));
    EXPECT_EQ(m_state.coordinate(), (Coordinate{51.5, -0.1}));
    // A daemon that went away is said to be reconnecting, fix or no fix.
    ReceiverStatus lost;
    lost.reconnecting = true;
    m_manager.report(lost);
    m_state.setCoordinateIsLiveTracked(false);
    EXPECT_EQ(age.receiverText().toStdString(), "GPS source lost · reconnecting…");
    m_state.setCoordinateIsLiveTracked(true);
    // A new fix is current again; a point that is not tracked never goes stale.
    m_state.setCoordinate({51.6, -0.1});
    EXPECT_FALSE(age.stale());
    m_state.setCoordinateIsLiveTracked(false);
    now += 60000;
    age.refresh();
    EXPECT_FALSE(age.stale());
}

TEST_F(ScreenControllersTest, AccuracyShowsOnlyForALiveFixThatHasOne)
{
    const RootCoordinatePanelController toolbar(m_state, m_preferences);
    EXPECT_EQ(toolbar.accuracyOpacity(), 0.0);
    m_state.setCoordinateIsLiveTracked(true);
    for (const double accuracy : {-1.0, std::numeric_limits<double>::quiet_NaN(),
                                  std::numeric_limits<double>::infinity()}) {
        m_state.setCoordinateAccuracy(accuracy);
        EXPECT_EQ(toolbar.accuracyOpacity(), 0.0) << accuracy;
    }
    m_state.setCoordinateAccuracy(65.0);
    EXPECT_EQ(toolbar.accuracyOpacity(), 1.0);
    // Stopping hides the label but keeps its text, so nothing in the toolbar moves.
    m_state.setCoordinateIsLiveTracked(false);
    EXPECT_EQ(toolbar.accuracyOpacity(), 0.0);
    // The locale of these tests is the US: imperial until the user chooses.
    EXPECT_EQ(toolbar.accuracyText(), QStringLiteral("±\u00a0213\u00a0ft"));
}

TEST_F(ScreenControllersTest, RootReportsAFailingStore)
{
    RootViewController root(m_tracking, m_defaults);
    EXPECT_FALSE(root.openScreen(QStringLiteral("preferences")));
    EXPECT_FALSE(root.bannerVisible());
    emit m_defaults.storeFailed(QStringLiteral("Settings cannot be saved"));
    EXPECT_TRUE(root.bannerVisible());
    EXPECT_EQ(root.bannerMessage(), QStringLiteral("Settings cannot be saved"));
}

// Every tool is on exactly one surface at each size: round over a phone's map (Share, Menu),
// labelled in a wide window's toolbar, or in the menu; the share sheet holds only sharing.
TEST_F(ScreenControllersTest, EachToolIsOnOneSurfaceAtEverySize)
{
    using Action = RootViewController::ToolAction;
    const RootViewController root(m_tracking, m_defaults);
    // Width, then per action in enum order: m(ap), t(oolbar), u (the menUu), - (nowhere).
    const std::pair<qreal, const char *> sizes[] = {
        {320, "mmuuuuuuuu"}, {390, "mmuuuuuuuu"}, {844, "mmuuuuuuuu"},
        {1023, "mmuuuuuuuu"}, {1024, "tttuutuuuu"}, {1439, "tttuutuuuu"},
        {1440, "tttuuttuut"}, {1920, "tttuuttuut"}};
    for (const auto &[width, expected] : sizes) {
        for (const bool targetSet : {true, false}) {
            QString where;
            for (int action = int(Action::Share); action <= int(Action::Settings); ++action) {
                const auto a = Action(action);
                const int places = root.mapHolds(a, width) + root.toolbarHolds(a, width) +
                                   root.menuHolds(a, width, targetSet);
                ASSERT_LE(places, 1) << width << " " << action;
                where += root.mapHolds(a, width)                  ? u'm'
                         : root.toolbarHolds(a, width)            ? u't'
                         : root.menuHolds(a, width, targetSet)    ? u'u'
                                                                  : u'-';
            }
            QString wanted = QString::fromLatin1(expected);
            // Clear Target shows only while there is one to clear.
            if (!targetSet)
                wanted[int(Action::ClearTarget)] = u'-';
            EXPECT_EQ(where, wanted) << width << " target " << targetSet;
        }
    }
}

TEST_F(ScreenControllersTest, RootLaysThePanelsOutByWidthAndIdiom)
{
    RootViewController root(m_tracking, m_defaults);
    // The device, whether it is a tablet, the area, and the panel's width: the whole width
    // above the map, a column of 400 beside it, and from 1440 a column for two with the field
    // tools beside the read-outs.
    const std::tuple<const char *, bool, qreal, qreal, qreal> cases[] = {
        {"phone portrait", false, 390, 800, 390},
        {"phone landscape", false, 844, 356, 400},
        {"small phone landscape", false, 480, 286, 240},
        {"tiny phone portrait", false, 320, 446, 320},
        {"tablet portrait", true, 768, 990, 384},
        {"narrow tablet window", true, 500, 700, 500},
        {"laptop", true, 1440, 860, 576},
        {"desktop", true, 2560, 1406, 760},
        {"tablet window wider than tall but narrow", true, 560, 400, 560},
    };
    constexpr qreal panelHeight = 160.0;
    for (const auto &[what, tablet, w, h, panelWidth] : cases) {
        SCOPED_TRACE(what);
        root.setTablet(tablet);
        const bool sideBySide = panelWidth < w;
        EXPECT_EQ(root.isRegularWidth(w, h), sideBySide);
        EXPECT_EQ(root.panelHoldsToolsBeside(w), w >= 1440);
        const QRectF panel = root.panelRect(w, h, panelHeight);
        const QRectF divider = root.dividerRect(w, h, panelHeight, 2.0);
        const QRectF map = root.mapRect(w, h, panelHeight, 2.0);
        // Three pieces that tile the area: nothing overlaps, nothing is left over.
        EXPECT_FALSE(panel.intersects(map) || panel.intersects(divider) || divider.intersects(map));
        const auto area = [](const QRectF &r) { return r.width() * r.height(); };
        EXPECT_NEAR(area(panel) + area(divider) + area(map), w * h, 1e-6);
        EXPECT_DOUBLE_EQ(std::min(divider.width(), divider.height()), 0.5);
        EXPECT_EQ(panel.width(), panelWidth);
        EXPECT_GE(area(map), w * h / 3);
    }
    // Tools unfolded taller than a phone's area: the panel scrolls, and a quarter stays map.
    root.setTablet(false);
    for (const qreal height : {446.0, 800.0})
        EXPECT_GE(root.mapRect(320, height, 2000, 2.0).height() + 0.5, height / 4) << height;
    // F11 goes to full screen from any state, and back to a window.
    EXPECT_EQ(RootViewController::fullScreenToggled(QWindow::Windowed), QWindow::FullScreen);
    EXPECT_EQ(RootViewController::fullScreenToggled(QWindow::Maximized), QWindow::FullScreen);
    EXPECT_EQ(RootViewController::fullScreenToggled(QWindow::FullScreen), QWindow::Windowed);
}

TEST_F(ScreenControllersTest, TheMapKeepsHalfANarrowWindowUnlessTheUserUnfoldsTheTools)
{
    RootViewController root(m_tracking, m_defaults);
    using Folding = RootViewController::FieldToolsFolding;
    // Read-outs 120 high, the locator 60, the tools 48 folded and 260 unfolded, in windows of
    // that height with a 56-point toolbar: does the panel show the locator, are the tools folded?
    const std::tuple<const char *, qreal, qreal, Folding, bool, bool> cases[] = {
        {"tall phone: everything", 390, 1100, Folding::Automatic, true, false},
        {"phone: the tools fold", 390, 844, Folding::Automatic, true, true},
        {"small phone: the locator goes to the toolbar", 320, 480, Folding::Automatic, false, true},
        {"unfolded by a tap", 320, 480, Folding::Unfolded, false, false},
        {"folded by a tap in a tall window", 390, 1100, Folding::Folded, true, true},
        {"side by side: never folded", 1024, 768, Folding::Folded, true, false},
    };
    for (const auto &[what, w, h, folding, locator, folded] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(root.panelShowsLocator(w, h - 56, h, 120, 60, 48), locator);
        EXPECT_EQ(root.fieldToolsFolded(folding, w, h - 56, h, 120, 60, 48, 260), folded);
    }
    QSignalSpy changed(&root, &RootViewController::fieldToolsFoldingChanged);
    root.setFieldToolsFolded(false);
    root.setFieldToolsFolded(false);
    EXPECT_EQ(root.fieldToolsFolding(), Folding::Unfolded);
    EXPECT_EQ(changed.size(), 1);
}

// Which rows of a picker are checked, as 0s and 1s.
QString marks(const FormatPickerViewController &picker)
{
    QString shown;
    for (const FormatChoice *choice : picker.choices())
        shown += choice->isChecked() ? u'1' : u'0';
    return shown;
}

TEST_F(ScreenControllersTest, PickersWriteATappedChoiceAndIgnoreRowsThatAreNotThere)
{
    VeltorFormatSettingsViewController veltor(m_preferences);
    CoordinateFormatSettingsViewController coordinate(m_preferences);
    DistanceFormatSettingsViewController distance(m_preferences);
    AppearanceSettingsViewController appearance(m_preferences);
    // A picker, the row tapped, and the marks then; the US locale starts with imperial.
    const std::tuple<FormatPickerViewController *, int, const char *> cases[] = {
        {&veltor, 2, "0010"},
        {&coordinate, 2, "001"},
        {&distance, 0, "10"},
        {&appearance, 2, "0010"}};
    for (const auto &[picker, tap, after] : cases) {
        const QString before = marks(*picker);
        picker->selectRow(-1);
        picker->selectRow(99);
        EXPECT_EQ(marks(*picker), before);
        picker->choices()[tap]->select();
        // Tapping the chosen row again keeps the mark.
        picker->selectRow(tap);
        EXPECT_EQ(marks(*picker), QLatin1String(after));
    }
    EXPECT_EQ(m_preferences.veltorFormat(), VeltorFormat::FourCharacters);
    EXPECT_EQ(m_preferences.coordinateFormat(), CoordinateFormat::DecimalDegrees);
    EXPECT_EQ(m_preferences.distanceFormat(), DistanceFormat::Metric);
    EXPECT_EQ(m_preferences.appearance(), Appearance::Red);
}

TEST_F(ScreenControllersTest, AutomaticAppearanceFollowsTheSunAtThePointAndSwitchesAtDusk)
{
    // Atlanta on 6 September 2009: civil dusk at 00:21 UTC, so 00:20 is still day.
    QDateTime now = QDateTime::fromString(QStringLiteral("2009-09-07T00:20:00Z"), Qt::ISODate);
    m_state.setCoordinate({33.8, -84.4});
    AppearanceSchedule schedule(m_preferences, m_state, [&] { return now; });
    QSignalSpy changed(&schedule, &AppearanceSchedule::appearanceChanged);
    EXPECT_EQ(schedule.appearance(), Appearance::Day);
    EXPECT_FALSE(schedule.nextChange().isValid());

    m_preferences.setAppearance(Appearance::Automatic);
    EXPECT_EQ(schedule.appearance(), Appearance::Day);
    const QDateTime dusk = schedule.nextChange();
    EXPECT_NEAR(double(now.secsTo(dusk)), 60.0, 60.0);
    // The timer fires at dusk: night from that second, and the next change is dawn.
    now = dusk;
    schedule.update();
    EXPECT_EQ(schedule.appearance(), Appearance::Night);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_GT(schedule.nextChange(), dusk.addSecs(9 * 3600));
    // Moving west, back into the light, turns it to day without waiting for a timer; a point
    // that stays on the same side changes nothing.
    now = dusk.addSecs(300);
    m_state.setCoordinate({33.8, -84.5});
    EXPECT_EQ(changed.count(), 1);
    m_state.setCoordinate({33.8, -100.0});
    EXPECT_EQ(schedule.appearance(), Appearance::Day);
    // A manual choice holds whatever the sun does, red included.
    m_preferences.setAppearance(Appearance::Red);
    EXPECT_EQ(schedule.appearance(), Appearance::Red);
    EXPECT_FALSE(schedule.nextChange().isValid());
}

TEST_F(ScreenControllersTest, StationSettingsKeepOnlyAddressesThatReadAsHostAndPort)
{
    StationSettingsViewController station(m_preferences);
    const SettingsViewController settings(m_preferences);
    EXPECT_EQ(settings.stationDetail(), QStringLiteral("System Positioning"));
    EXPECT_FALSE(station.usesGpsd());

    station.setGpsdAddress(QStringLiteral("shack-pi:3000"));
    EXPECT_EQ(m_preferences.gpsSource(), QString());
    station.useGpsd();
    EXPECT_EQ(m_preferences.gpsSource(), QStringLiteral("gpsd://shack-pi:3000"));
    station.toggleWsjtx();
    EXPECT_EQ(settings.stationDetail().toStdString(), "gpsd · WSJT-X");

    // A field, a bad address with what is said of it, a good one, and what each leaves stored.
    using Setter = void (StationSettingsViewController::*)(const QString &);
    const std::tuple<Setter, const char *, const char *, const char *,
                     QString (PreferencesSystem::*)() const, const char *>
        fields[] = {{&StationSettingsViewController::setGpsdAddress,
                     "shack-pi:", "The port must be a number from 1 to 65535.", "[::1]:2947",
                     &PreferencesSystem::gpsSource, "gpsd://[::1]:2947"},
                    {&StationSettingsViewController::setWsjtxAddress, "224.0.0.1:70000",
                     "The port must be a number from 1 to 65535.", "239.255.0.1:2237",
                     &PreferencesSystem::wsjtxAddress, "239.255.0.1:2237"},
                    {&StationSettingsViewController::setJs8CallAddress, "",
                     "Write the address as host:port, with an IPv6 address in brackets.",
                     "radio.local:2442", &PreferencesSystem::js8CallAddress, "radio.local:2442"}};
    for (const auto &[set, bad, error, good, stored, expected] : fields) {
        const QString before = (m_preferences.*stored)();
        (station.*set)(QString::fromUtf8(bad));
        EXPECT_EQ((m_preferences.*stored)(), before) << bad;
        EXPECT_EQ((station.gpsdAddressError() + station.wsjtxAddressError() +
                   station.js8CallAddressError())
                      .toStdString(),
                  error);
        (station.*set)(QString::fromUtf8(good));
        EXPECT_EQ((m_preferences.*stored)().toStdString(), expected);
    }
    EXPECT_EQ(station.gpsdAddressError() + station.wsjtxAddressError() +
                  station.js8CallAddressError(),
              QString());
    station.useSystemSource();
    EXPECT_EQ(m_preferences.gpsSource(), QString());
}

TEST_F(ScreenControllersTest, MapSourcesNeedTheirFileOrServerBeforeTheyAreChosen)
{
    MapSourceSettingsViewController picker(m_preferences);
    const SettingsViewController settings(m_preferences);
    EXPECT_EQ(marks(picker), QStringLiteral("10000"));
    picker.selectRow(1);
    EXPECT_EQ(marks(picker), QStringLiteral("01000"));
    EXPECT_EQ(settings.mapSourceDetail(), QStringLiteral("OpenStreetMap"));
    EXPECT_TRUE(picker.note().contains(QStringLiteral("© OpenStreetMap contributors")));

    // A file or a server that is not given, not there or not one keeps the choice as it was.
    picker.selectRow(3);
    QSignalSpy checked(&picker, &MapSourceSettingsViewController::mbtilesChecked);
    picker.setMbtilesPath(m_dir.filePath(QStringLiteral("missing.mbtiles")));
    ASSERT_TRUE(checked.wait());
    picker.selectRow(4);
    picker.setCustomTemplate(QStringLiteral("ftp://tiles.example/{z}/{x}/{y}.png"));
    EXPECT_EQ(marks(picker), QStringLiteral("01000"));
    EXPECT_FALSE(picker.mbtilesError().isEmpty());
    EXPECT_EQ(picker.customTemplateError().toStdString(),
              "A tile address starts with http:// or https:// and holds {z}, {x} and {y}.");

    picker.setCustomTemplate(QStringLiteral("https://tiles.example/{z}/{x}/{y}.png"));
    picker.setCustomAttribution(QStringLiteral("© Example"));
    EXPECT_EQ(marks(picker), QStringLiteral("00001"));
    EXPECT_EQ(MapSource::read(m_defaults).credit(), QStringLiteral("© Example"));
    EXPECT_EQ(picker.customTemplateError(), QString());
}

// What the settings hold, as the map reads it: a store from before there was a choice, a choice
// whose file or server has gone, and a kind that is not one.
TEST_F(ScreenControllersTest, MapSourceReadsEveryStoreAsSomethingItCanDraw)
{
    const std::tuple<const char *, const char *, const char *, MapSource::Kind> stores[] = {
        {"", "", "", MapSource::Kind::Offline},
        {"", "", "https://t.example/{z}/{x}/{y}.png", MapSource::Kind::Custom},
        {"MapSourceOpenTopoMap", "", "", MapSource::Kind::OpenTopoMap},
        {"MapSourceMbtiles", "", "", MapSource::Kind::Offline},
        {"MapSourceMbtiles", "/maps/alps.mbtiles", "", MapSource::Kind::Mbtiles},
        {"MapSourceCustom", "", "", MapSource::Kind::Offline},
        {"MapSourceSatellite", "", "https://t.example/{z}/{x}/{y}.png", MapSource::Kind::Offline}};
    for (const auto &[kind, path, urlTemplate, expected] : stores) {
        m_defaults.setObject(QString::fromUtf8(kind), QString(MapSource::kindKey));
        m_defaults.setObject(QString::fromUtf8(path), QString(MapSource::mbtilesPathKey));
        m_defaults.setObject(QString::fromUtf8(urlTemplate), QString(MapSource::templateKey));
        EXPECT_EQ(MapSource::read(m_defaults).kind, expected) << kind << path << urlTemplate;
    }
}

} // namespace
