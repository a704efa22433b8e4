#include "ApplicationStateSystem.h"
#include "GlyphImageProvider.h"
#include "Localization.h"
#include "LocationTrackingSystem.h"
#include "PreferencesSystem.h"
#include "ReadoutFit.h"
#include "UserDefaults.h"

#include <QPluginLoader>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtQml/qqmlextensionplugin.h>
#include <QtTest>

#include <memory>
#include <optional>

Q_IMPORT_QML_PLUGIN(VeltorPlugin)

namespace {

// A QML type with what goes inside its braces, shown in a window of that size.
struct Row
{
    const char *type, *body;
    QSize size = QSize(390, 844);
};
constexpr const char *fill = "anchors.fill: parent", *phone = "anchors.fill: parent; tablet: false";
constexpr const char *tablet = "anchors.fill: parent; tablet: true";
// The sheets as their buttons open them.
constexpr const char *sheetOpen = "panel: MapPanelController {} "
                                  "Component.onCompleted: Qt.callLater(() => present(parent))";
constexpr const char *menuOpen =
    "root: RootViewController {} panel: MapPanelController {} target: TargetController {} "
    "proof: ProofSnapshotController {} windowWidth: parent.width; "
    "Component.onCompleted: Qt.callLater(() => present(parent))";
constexpr const char *welcomeOpen =
    "menuText: \"Menu, at the top left of the map, holds the target and the settings.\"; "
    "Component.onCompleted: Qt.callLater(open)";
// Components the screens below already show appear only in states those screens never reach.
constexpr Row rows[] = {
    {"RootScreen", phone, {320, 480}}, {"RootScreen", phone}, {"RootScreen", phone, {844, 390}},
    {"RootScreen", tablet, {1024, 768}}, {"RootScreen", tablet, {2560, 1440}},
    {"CoordinatePanelScreen", "width: parent.width"}, {"VeltorKeypadScreen", fill},
    {"LatitudeLongitudeKeypadScreen", fill},
    {"LatitudeLongitudeKeypadScreen",
     "anchors.fill: parent; style: LatitudeLongitudeKeypadViewController.Longitude"},
    {"SettingsScreen", fill}, {"VeltorFormatPickerScreen", fill},
    {"CoordinateFormatPickerScreen", fill}, {"DistanceFormatPickerScreen", fill},
    {"AppearancePickerScreen", fill}, {"StationSettingsScreen", fill},
    // The smallest window: nothing overlaps, nothing runs out of its row.
    {"SettingsScreen", fill, {320, 480}}, {"VeltorFormatPickerScreen", fill, {320, 480}},
    {"CoordinateFormatPickerScreen", fill, {320, 480}},
    {"DistanceFormatPickerScreen", fill, {320, 480}}, {"AppearancePickerScreen", fill, {320, 480}},
    {"CrossingAlertPickerScreen", fill, {320, 480}}, {"MapSourcePickerScreen", fill, {320, 480}},
    {"StationSettingsScreen", fill, {320, 480}}, {"VeltorKeypadScreen", fill, {320, 480}},
    {"LatitudeLongitudeKeypadScreen", fill, {320, 480}},
    {"KeepAreaScreen", "anchors.fill: parent; map: MapView {}", {320, 480}},
    // With a target, so that Clear Target is there to be pressed.
    {"TargetInstrument",
     "width: parent.width; target: TargetController { Component.onCompleted: "
     "setCurrentPointAsTarget(); Component.onDestruction: clearTarget() }",
     {320, 480}},
    {"TitleLabel", "text: \"x\""},
    {"Body1Button", "title: \"x\""},
    {"ShareSheet", sheetOpen, {320, 480}},
    {"ToolsMenu", menuOpen, {320, 480}},
    {"ToolsMenu", menuOpen, {844, 390}},
    {"ToolsMenu", menuOpen, {1024, 768}},
    {"WelcomeCard", welcomeOpen, {320, 480}},
    {"WelcomeCard", welcomeOpen, {844, 390}}};

} // namespace

// Every screen and component of the app loads and renders without a single QML warning, in
// each of the three appearances.
class QmlScreensTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_home;
    std::optional<Localization> m_localization;


    // TYPE { BODY } made by day in an item whose "appearance" sets the app's, in WINDOW at SIZE.
    static std::unique_ptr<QQuickItem> show(QQmlEngine &engine, QQuickWindow &window,
                                            const QString &type, const QString &body, QSize size)
    {
        engine.addImportPath(QStringLiteral("qrc:/"));
        engine.addImageProvider(QString(GlyphImageProvider::providerId), new GlyphImageProvider);
        window.setColor(Qt::black);
        window.resize(size);
        QQmlComponent component(&engine);
        component.setData(
            QStringLiteral("import QtQuick\nimport Veltor\n"
                           "Item { id: root; width: %3; height: %4; property int appearance: 0\n"
                           "  Binding { target: Theme; property: \"appearance\"; "
                           "value: root.appearance }\n  %1 { %2 }\n}\n")
                .arg(type, body, QString::number(size.width()), QString::number(size.height()))
                .toUtf8(),
            QUrl(QStringLiteral("qrc:/test/%1.qml").arg(type)));
        std::unique_ptr<QQuickItem> item(qobject_cast<QQuickItem *>(component.create()));
        if (!item) {
            qWarning("%s", qPrintable(component.errorString()));
            return item;
        }
        item->setParentItem(window.contentItem());
        window.show();
        if (!QTest::qWaitForWindowExposed(&window) || window.grabWindow().isNull())
            item.reset();
        return item;
    }

private slots:
    void initTestCase()
    {
        // The module's plugin object is made here, on this thread, before any engine's type
        // loader thread asks for it: Qt joins those threads where ThreadSanitizer cannot see.
        QVERIFY(!QPluginLoader::staticInstances().isEmpty());
        QStandardPaths::setTestModeEnabled(true);
        UserDefaults::setStandardFileName(m_home.filePath(QStringLiteral("veltor.ini")));
        // A replayed log, so no platform positioning plugin is asked for anything.
        QVERIFY(LocationTrackingSystem::setSharedSource(
            QStringLiteral(VELTOR_TEST_DATA_DIR "/nmea/greenwich-walk.nmea")));
        // German: among the six tables, the one whose words run longest.
        m_localization.emplace(QLocale(QLocale::German));
        QVERIFY(m_localization->isLoaded());
    }

    // Every screen and component, and the root screen at every window size, where its buttons
    // must stand clear of each other and inside it, in German, whose texts run longest; every
    // button of every screen is a target a gloved finger can hit.
    // The read-outs of the longest values show whole, at or above the font floor, in every
    // notation, at the widths the panel takes on a phone, beside the map, in a narrow window and
    // as the wide column of a laptop and a desktop, with captions in all six languages.
    void readoutsShowWhole_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<int>("notation");
        QTest::addColumn<int>("width");
        for (const char *language : {"en", "de", "es", "fr", "it", "ja"}) {
            for (int notation = 0; notation < 3; ++notation) {
                for (const int width : {320, 360, 384, 390, 400, 500, 576, 760, 1024}) {
                    QTest::addRow("%s notation %d %d wide", language, notation, width)
                        << QString::fromLatin1(language) << notation << width;
                }
            }
        }
    }

    void readoutsShowWhole()
    {
        QFETCH(QString, language);
        QFETCH(int, notation);
        QFETCH(int, width);
        const Localization localization{QLocale(language)};
        PreferencesSystem &preferences = PreferencesSystem::sharedSystem();
        preferences.setCoordinateFormat(CoordinateFormat(notation));
        preferences.setVeltorFormat(VeltorFormat::EightCharacters);
        // The longest each notation writes: 89° 59′ 59″ S, 89° 59.9999′ S, 89.9999° S and the
        // same for 179° W, just short of rounding up to the whole degree.
        const double nines[] = {0.99986, 0.999998, 0.99994};
        ApplicationStateSystem::sharedSystem().setCoordinate(
            {-89.0 - nines[notation], -179.0 - nines[notation]});
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".+")));
        QQmlEngine engine;
        QQuickWindow window;
        const std::unique_ptr<QQuickItem> item =
            show(engine, window, QStringLiteral("CoordinatePanelScreen"),
                 QStringLiteral("width: parent.width"), QSize(width, 600));
        QVERIFY(item);
        QVERIFY(!window.grabWindow().isNull());
        int readouts = 0;
        for (QQuickItem *button : item->findChildren<QQuickItem *>()) {
            const QString title = button->property("title").toString();
            if (!button->isVisible() || !button->inherits("QQuickAbstractButton") ||
                !(title.endsWith(u'W') || title.endsWith(u'S') || title.startsWith(u"AA")))
                continue;
            ++readouts;
            const QString longest[] = {QStringLiteral("59″"), QStringLiteral("59.9999′"),
                                       QStringLiteral("9.9999°")};
            QVERIFY2(title.startsWith(u"AA") || title.contains(longest[notation]),
                     qPrintable(title));
            const auto *text = button->property("contentItem").value<QQuickItem *>();
            QVERIFY(text);
            const QString what = QStringLiteral("\"%1\" %2 in %3 at %4 px")
                                     .arg(title)
                                     .arg(text->property("contentWidth").toReal())
                                     .arg(text->width())
                                     .arg(text->property("font").value<QFont>().pixelSize());
            QVERIFY2(text->property("contentWidth").toReal() <= text->width() + 0.5 &&
                         text->property("lineCount").toInt() == 1,
                     qPrintable(what));
            QVERIFY2(text->property("font").value<QFont>().pixelSize() >=
                         ReadoutFit::minimumPixelSize,
                     qPrintable(what));
            const QRectF inside(0, 0, width, item->height());
            QVERIFY2(inside.contains(button->mapRectToItem(item.get(), button->boundingRect())),
                     qPrintable(what));
        }
        QCOMPARE(readouts, 3);
    }

    // A sheet takes the keyboard's focus and gives it back to what had it when it closes.
    void sheetGivesFocusBack()
    {
        QQmlEngine engine;
        QQuickWindow window;
        const std::unique_ptr<QQuickItem> item =
            show(engine, window, QStringLiteral("RootScreen"), QLatin1String(phone), {390, 844});
        QVERIFY(item);
        QQuickItem *readout = nullptr;
        for (QQuickItem *button : item->findChildren<QQuickItem *>()) {
            if (button->isVisible() && button->inherits("QQuickAbstractButton") &&
                button->property("title").toString().contains(u'°') && !readout)
                readout = button;
        }
        QVERIFY(readout);
        readout->forceActiveFocus(Qt::TabFocusReason);
        QObject *root = item->findChild<QObject *>(QString(), Qt::FindChildrenRecursively);
        for (QObject *child : item->findChildren<QObject *>()) {
            if (child->inherits("RootViewController"))
                root = child;
        }
        QVERIFY(QMetaObject::invokeMethod(root, "showSettings"));
        QTRY_VERIFY(window.activeFocusItem() && !item->isAncestorOf(window.activeFocusItem()));
        QTest::qWait(300);
        QTest::keyClick(&window, Qt::Key_Escape);
        QTRY_COMPARE(window.activeFocusItem(), readout);
    }

    // A keypad pulled down far enough closes as its ✕ does: the point stays where it was, and
    // nothing typed is kept; a short pull is only a pull.
    void keypadClosesWhenPulledDown_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<int>("pull");
        QTest::addColumn<bool>("closes");
        for (const char *type : {"VeltorKeypadScreen", "LatitudeLongitudeKeypadScreen"}) {
            QTest::addRow("%s far", type) << QString::fromLatin1(type) << 220 << true;
            QTest::addRow("%s short", type) << QString::fromLatin1(type) << 60 << false;
        }
    }

    void keypadClosesWhenPulledDown()
    {
        QFETCH(QString, type);
        QFETCH(int, pull);
        QFETCH(bool, closes);
        ApplicationStateSystem &state = ApplicationStateSystem::sharedSystem();
        state.setCoordinate({10.5, 20.5});
        QQmlEngine engine;
        QQuickWindow window;
        const std::unique_ptr<QQuickItem> item =
            show(engine, window, type, QLatin1String(fill), {390, 844});
        QVERIFY(item);
        QQuickItem *keypad = item->childItems().constLast();
        QSignalSpy dismissed(keypad, SIGNAL(dismissRequested()));
        keypad->forceActiveFocus();
        QTest::keyClick(&window, type.startsWith(u"Veltor") ? Qt::Key_J : Qt::Key_3);
        QPoint at(195, 300);
        QTest::mousePress(&window, Qt::LeftButton, {}, at);
        for (int step = 0; step < 10; ++step) {
            at.ry() += pull / 10;
            QTest::mouseMove(&window, at);
        }
        QTest::mouseRelease(&window, Qt::LeftButton, {}, at);
        QCOMPARE(dismissed.count(), closes ? 1 : 0);
        QCOMPARE(state.coordinate(), (Coordinate{10.5, 20.5}));
    }

    void rendersWithoutWarnings_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("appearance");
        QTest::addColumn<QString>("language");
        const char *appearances[] = {"day", "night", "red"};
        for (int appearance = 0; appearance < 3; ++appearance) {
            for (int row = 0; row < int(std::size(rows)); ++row) {
                QTest::addRow("%s %dx%d %s %s", rows[row].type, rows[row].size.width(),
                              rows[row].size.height(), appearances[appearance], rows[row].body)
                    << row << appearance << QString();
            }
        }
        // The smallest window in the other languages, whose words break elsewhere.
        for (const char *language : {"en", "es", "fr", "it", "ja"}) {
            for (int row = 0; row < int(std::size(rows)); ++row) {
                if (rows[row].size.width() == 320)
                    QTest::addRow("%s %dx%d %s %s", rows[row].type, rows[row].size.width(),
                                  rows[row].size.height(), language, rows[row].body)
                        << row << 0 << QString::fromLatin1(language);
            }
        }
    }

    void rendersWithoutWarnings()
    {
        QFETCH(int, row);
        QFETCH(int, appearance);
        QFETCH(QString, language);
        std::optional<Localization> localization;
        if (!language.isEmpty())
            localization.emplace(QLocale(language));
        const QString type = QLatin1String(rows[row].type), body = QLatin1String(rows[row].body);
        const QSize size = rows[row].size;
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".+")));
        QQmlEngine engine;
        QQuickWindow window;
        const std::unique_ptr<QQuickItem> item = show(engine, window, type, body, size);
        QVERIFY(item);
        // Switched while on screen, as the user switches.
        item->setProperty("appearance", appearance);
        // A frame drawn at this size: every layout has been polished for it.
        const QImage frame = window.grabWindow().convertToFormat(QImage::Format_RGB32);
        int pressables = 0;
        for (QQuickItem *control : item->findChildren<QQuickItem *>()) {
            // No text runs out of the room it is given: it wraps, fits or is made shorter.
            if (control->isVisible() && control->inherits("QQuickText") && control->width() > 0 &&
                type.endsWith(u"Screen")) {
                const bool oneLine = control->property("wrapMode").toInt() == 0;
                QVERIFY2(!control->property("truncated").toBool() &&
                             (!oneLine || control->property("contentWidth").toReal() <=
                                              control->width() + 1),
                         qPrintable(QStringLiteral("\"%1\" %2 wide in %3")
                                        .arg(control->property("text").toString())
                                        .arg(control->property("contentWidth").toReal())
                                        .arg(control->width())));
            }
            if (control->isVisible() && control->inherits("QQuickAbstractButton") &&
                (type.endsWith(u"Screen") || type.endsWith(u"Instrument"))) {
                ++pressables;
                QVERIFY2(control->width() >= 48 && control->height() >= 48,
                         qPrintable(QStringLiteral("%1 %2x%3 \"%4\"")
                                        .arg(QLatin1String(control->metaObject()->className()))
                                        .arg(control->width())
                                        .arg(control->height())
                                        .arg(control->property("text").toString())));
            }
        }
        if (type.endsWith(u"Instrument"))
            QCOMPARE(pressables, 1);
        if (type == u"RootScreen") {
            QList<QRectF> buttons;
            for (QQuickItem *button : item->findChildren<QQuickItem *>()) {
                if (button->isVisible() && button->width() > 0 &&
                    (QLatin1String(button->metaObject()->className()).contains(u"Button_QML") ||
                     QLatin1String(button->metaObject()->className()).contains(u"Action_QML")))
                    buttons.append(button->mapRectToScene(button->boundingRect()));
            }
            QVERIFY(buttons.size() >= 8);
            const QRectF inside(QPointF(0, 0), QSizeF(size));
            for (qsizetype i = 0; i < buttons.size(); ++i) {
                QVERIFY2(inside.contains(buttons[i]), qPrintable(QString::number(i)));
                for (qsizetype j = i + 1; j < buttons.size(); ++j) {
                    QVERIFY2(!buttons[i].intersects(buttons[j]),
                             qPrintable(QStringLiteral("%1 and %2").arg(i).arg(j)));
                }
            }
        }
        if (type.endsWith(u"Sheet") || type.endsWith(u"Menu") || type.endsWith(u"Card")) {
            // Opened and moved in: every action inside the window, or inside the part of the
            // sheet that scrolls, which is; a finger's size each.
            QTest::qWait(400);
            const QRectF inside(QPointF(0, 0), QSizeF(size));
            int actions = 0;
            for (QQuickItem *action : item->findChildren<QQuickItem *>()) {
                const QLatin1String name(action->metaObject()->className());
                if (!action->isVisible() ||
                    !(name.startsWith(u"ActionRow_QML") || name.startsWith(u"WideButton_QML")))
                    continue;
                QQuickItem *area = action;
                for (QQuickItem *up = action->parentItem(); up; up = up->parentItem()) {
                    if (up->inherits("QQuickFlickable")) {
                        area = up;
                        break;
                    }
                }
                const QRectF scene = area->mapRectToScene(area->boundingRect());
                QVERIFY2(inside.contains(scene) && action->height() >= 48,
                         qPrintable(QStringLiteral("%1 at %2,%3 %4x%5")
                                        .arg(name)
                                        .arg(scene.x())
                                        .arg(scene.y())
                                        .arg(scene.width())
                                        .arg(action->height())));
                ++actions;
            }
            QVERIFY(actions >= (type.endsWith(u"Card") ? 1 : 4));
        }
        if (appearance != 2)
            return;
        // Night vision: a frame of nothing but red and black, the map and its pin included.
        int notRed = frame.isNull();
        for (int y = 0; y < frame.height(); ++y) {
            for (int x = 0; x < frame.width(); ++x)
                notRed += qGreen(frame.pixel(x, y)) > 0x20 || qBlue(frame.pixel(x, y)) > 0x20;
        }
        QVERIFY2(notRed == 0, qPrintable(QString::number(notRed)));
    }
};

QTEST_MAIN(QmlScreensTest)
#include "QmlScreensTest.moc"
