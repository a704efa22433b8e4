#include "ApplicationStateSystem.h"
#include "GlyphImageProvider.h"
#include "LocationTrackingSystem.h"
#include "UserDefaults.h"

#include <QAccessible>
#include <QQmlApplicationEngine>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtQml/qqmlextensionplugin.h>
#include <QtTest>

#include <memory>

Q_IMPORT_QML_PLUGIN(VeltorPlugin)

// Every screen and component of the app loads and renders without a single QML warning, in
// each of the three appearances; and a screen shows its texts in the user's language.
class QmlScreensTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_home;

    static void prepare(QQmlEngine &engine)
    {
        engine.addImportPath(QStringLiteral("qrc:/"));
        engine.addImageProvider(QString(GlyphImageProvider::providerId), new GlyphImageProvider);
    }

    // Makes TYPE (with BODY inside its braces) in a phone-sized item whose "appearance" sets
    // the app's.
    static std::unique_ptr<QQuickItem> create(QQmlEngine &engine, const QString &type,
                                              const QString &body, int appearance,
                                              QSize size = QSize(390, 844))
    {
        QQmlComponent component(&engine);
        const QString source =
            QStringLiteral("import QtQuick\nimport Veltor\n"
                           "Item { id: root; width: %4; height: %5; property int appearance: %1\n"
                           "  Binding { target: Theme; property: \"appearance\"; value: root.appearance }\n"
                           "  %2 { %3 }\n}\n")
                .arg(appearance)
                .arg(type, body)
                .arg(size.width())
                .arg(size.height());
        component.setData(source.toUtf8(), QUrl(QStringLiteral("qrc:/test/%1.qml").arg(type)));
        std::unique_ptr<QObject> object(component.create());
        if (!object)
            qWarning("%s", qPrintable(component.errorString()));
        return std::unique_ptr<QQuickItem>(qobject_cast<QQuickItem *>(object.release()));
    }

    static QList<QQuickItem *> allItems(QQuickItem *root)
    {
        QList<QQuickItem *> items{root};
        for (QQuickItem *child : root->childItems())
            items += allItems(child);
        return items;
    }

private slots:
    void initTestCase()
    {
        QStandardPaths::setTestModeEnabled(true);
        UserDefaults::setStandardFileName(m_home.filePath(QStringLiteral("veltor.ini")));
        // A replayed log, so no platform positioning plugin is asked for anything.
        QVERIFY(LocationTrackingSystem::setSharedSource(
            QStringLiteral(VELTOR_TEST_DATA_DIR "/nmea/greenwich-walk.nmea")));
    }

    void rendersWithoutWarnings_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("body");
        QTest::addColumn<int>("appearance");
        const QList<std::pair<const char *, const char *>> types{
            {"RootScreen", "anchors.fill: parent"},
            {"CoordinatePanelScreen", "width: parent.width"},
            {"VeltorKeypadScreen", "anchors.fill: parent"},
            {"LatitudeLongitudeKeypadScreen", "anchors.fill: parent"},
            {"LatitudeLongitudeKeypadScreen",
             "anchors.fill: parent; style: LatitudeLongitudeKeypadViewController.Longitude"},
            {"SettingsScreen", "anchors.fill: parent"},
            {"VeltorFormatPickerScreen", "anchors.fill: parent"},
            {"CoordinateFormatPickerScreen", "anchors.fill: parent"},
            {"DistanceFormatPickerScreen", "anchors.fill: parent"},
            {"AppearancePickerScreen", "anchors.fill: parent"},
            {"SettingsRow", "title: \"x\"; detail: \"y\""},
            {"SwitchRow", "title: \"x\"; checked: true"},
            {"ChoiceRow", "text: \"x\"; checked: true"},
            {"TitleLabel", "text: \"x\""},
            {"Body1Label", "text: \"x\""},
            {"Body2Label", "text: \"x\""},
            {"CaptionLabel", "text: \"x\""},
            {"TintLabel", "text: \"x\""},
            {"UnderlineButton", "title: \"x\""},
            {"Body1Button", "title: \"x\""},
            {"TitleButton", "title: \"x\""},
            {"KeypadButton", "title: \"7\"; alternateStyle: true"},
            {"KeypadButton", "maskImage: \"delete\"; enabled: false"},
            {"KeypadInputLabel", "text: \"x\""},
            {"MapControlButton", "title: \"+\""},
            {"WideButton", "title: \"x\""},
            {"FormSheet", ""},
            {"ShareSheet", "panel: MapPanelController {} Component.onCompleted: Qt.callLater(open)"},
        };
        const char *appearances[] = {"day", "night", "red"};
        for (int appearance = 0; appearance < 3; ++appearance) {
            for (const auto &[type, body] : types) {
                QTest::addRow("%s %s %s", type, appearances[appearance], body)
                    << QString::fromLatin1(type) << QString::fromLatin1(body) << appearance;
            }
        }
    }

    void rendersWithoutWarnings()
    {
        QFETCH(QString, type);
        QFETCH(QString, body);
        QFETCH(int, appearance);
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".+")));
        QQmlEngine engine;
        prepare(engine);
        QQuickWindow window;
        window.setColor(Qt::black);
        window.resize(390, 844);
        // Made by day, then switched while on screen, as the user switches.
        const std::unique_ptr<QQuickItem> item = create(engine, type, body, 0);
        QVERIFY(item);
        item->setParentItem(window.contentItem());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QVERIFY(!window.grabWindow().isNull());
        item->setProperty("appearance", appearance);
        const QImage frame = window.grabWindow().convertToFormat(QImage::Format_RGB32);
        QVERIFY(!frame.isNull());
        if (appearance != 2)
            return;
        // Night vision: nothing but red and black, the map and its pin included.
        int notRed = 0;
        for (int y = 0; y < frame.height(); ++y) {
            for (int x = 0; x < frame.width(); ++x) {
                const QRgb pixel = frame.pixel(x, y);
                notRed += qGreen(pixel) > 0x20 || qBlue(pixel) > 0x20;
            }
        }
        QVERIFY2(notRed == 0, qPrintable(QString::number(notRed)));
    }

    // The window opens the screen named at launch, in a form sheet, and Escape closes it.
    void mainWindowOpensTheScreenAskedFor_data()
    {
        QTest::addColumn<QString>("screen");
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("typed");
        QTest::newRow("locator keypad") << "locator-keypad" << "VeltorKeypadScreen" << "JN5";
        QTest::newRow("latitude keypad") << "latitude-keypad" << "LatitudeLongitudeKeypadScreen"
                                         << QString::fromUtf8("5° N");
        QTest::newRow("settings") << "settings" << "SettingsScreen" << QString();
    }

    void mainWindowOpensTheScreenAskedFor()
    {
        QFETCH(QString, screen);
        QFETCH(QString, type);
        QFETCH(QString, typed);
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".+")));
        QQmlApplicationEngine engine;
        prepare(engine);
        engine.setInitialProperties({{QStringLiteral("appearanceOverride"), 2},
                                     {QStringLiteral("initialScreen"), screen},
                                     {QStringLiteral("initialZoomLevel"), 4.0},
                                     {QStringLiteral("tablet"), false}});
        engine.load(QUrl(QStringLiteral("qrc:/Veltor/Main.qml")));
        QCOMPARE(engine.rootObjects().size(), 1);
        auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().first());
        QVERIFY(window);
        QVERIFY(QTest::qWaitForWindowExposed(window));
        const auto keypadShown = [window, type] {
            for (QQuickItem *item : allItems(window->contentItem())) {
                if (QString::fromLatin1(item->metaObject()->className()).startsWith(type + QStringLiteral("_QML")))
                    return item->isVisible();
            }
            return false;
        };
        QTRY_VERIFY(keypadShown());
        QTRY_VERIFY(window->activeFocusItem());
        // Typed on the keyboard, then abandoned: the point stays where it was.
        const Coordinate before = ApplicationStateSystem::sharedSystem().coordinate();
        for (const char key : {'j', 'n', '5'})
            QTest::keyClick(window, key);
        if (!typed.isEmpty())
            QTRY_COMPARE(window->activeFocusItem()->property("text").toString(), typed);
        QTest::keyClick(window, Qt::Key_Escape);
        QTRY_VERIFY(!keypadShown());
        QCOMPARE(ApplicationStateSystem::sharedSystem().coordinate(), before);
    }

    // Pressing dims a text button at once; releasing fades it back. A screen reader's press
    // action presses every kind of button, and a disabled key is out of its reach.
    void buttonsAnswerFingersAndScreenReaders()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".+")));
        QQmlEngine engine;
        prepare(engine);
        QQuickWindow window;
        window.resize(390, 844);
        const std::unique_ptr<QQuickItem> root = create(
            engine, QStringLiteral("Column"),
            QStringLiteral("UnderlineButton { title: \"47° N\" } KeypadButton { title: \"7\" } "
                           "KeypadButton { title: \"8\"; enabled: false } "
                           "WideButton { title: \"x\"; width: 200 } MapControlButton { title: \"+\" }"),
            0);
        QVERIFY(root);
        root->setParentItem(window.contentItem());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QList<QQuickItem *> buttons = root->childItems().first()->childItems();
        QCOMPARE(buttons.size(), 5);

        QQuickItem *underline = buttons[0];
        const QPoint centre = underline->mapToScene(underline->boundingRect().center()).toPoint();
        QTest::mousePress(&window, Qt::LeftButton, {}, centre);
        QCOMPARE(underline->opacity(), 0.3);
        QTest::mouseRelease(&window, Qt::LeftButton, {}, centre);
        QTest::qWait(50);
        QVERIFY(underline->opacity() > 0.3 && underline->opacity() < 1.0);
        QTRY_COMPARE_WITH_TIMEOUT(underline->opacity(), 1.0, 1000);

        // A key turns to the tint while held, and clicks (silently here, without a sound device).
        QQuickItem *key = buttons[1];
        const QPoint corner = key->mapToScene(QPointF(3, 3)).toPoint();
        const QColor face = window.grabWindow().pixelColor(corner);
        QSignalSpy keyClicked(key, SIGNAL(clicked()));
        QTest::mousePress(&window, Qt::LeftButton, {}, corner);
        const QColor held = window.grabWindow().pixelColor(corner);
        QTest::mouseRelease(&window, Qt::LeftButton, {}, corner);
        QCOMPARE(keyClicked.count(), 1);
        QCOMPARE(face, QColor(Qt::white));
        QCOMPARE(held, QColor(0x0a, 0x5f, 0xc2));
        QCOMPARE(window.grabWindow().pixelColor(corner), face);

        for (QQuickItem *button : buttons) {
            QSignalSpy clicked(button, SIGNAL(clicked()));
            QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(button);
            if (!button->isEnabled()) {
                QVERIFY(!accessible);
                continue;
            }
            QVERIFY(accessible);
            QVERIFY(accessible->actionInterface());
            accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
            QCOMPARE(clicked.count(), 1);
        }
        QCOMPARE(QAccessible::queryAccessibleInterface(buttons[1])->text(QAccessible::Name),
                 QStringLiteral("7"));
    }

    // At every window size the root screen's buttons stand clear of each other and inside it,
    // even with texts far longer than English ones (no tables are loaded here: ids show).
    void rootButtonsNeverOverlap_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("tablet");
        QTest::newRow("tiny phone") << QSize(320, 480) << false;
        QTest::newRow("phone") << QSize(390, 844) << false;
        QTest::newRow("phone landscape") << QSize(844, 390) << false;
        QTest::newRow("tablet") << QSize(1024, 768) << true;
        QTest::newRow("desktop") << QSize(2560, 1440) << true;
    }

    void rootButtonsNeverOverlap()
    {
        QFETCH(QSize, size);
        QFETCH(bool, tablet);
        QQmlEngine engine;
        prepare(engine);
        QQuickWindow window;
        window.resize(size);
        const std::unique_ptr<QQuickItem> root = create(
            engine, QStringLiteral("RootScreen"),
            QStringLiteral("anchors.fill: parent; tablet: %1").arg(tablet ? u"true" : u"false"), 0,
            size);
        QVERIFY(root);
        root->setParentItem(window.contentItem());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        // A frame drawn at this size: every layout has been polished for it.
        QVERIFY(!window.grabWindow().isNull());
        QList<QRectF> buttons;
        for (QQuickItem *item : allItems(root.get())) {
            const QString type = QString::fromLatin1(item->metaObject()->className());
            if (item->isVisible() && item->width() > 0 && type.contains(u"Button_QML"))
                buttons.append(item->mapRectToScene(item->boundingRect()));
        }
        QVERIFY(buttons.size() >= 8);
        const QRectF windowRect(QPointF(0, 0), QSizeF(size));
        for (qsizetype i = 0; i < buttons.size(); ++i) {
            QVERIFY2(windowRect.contains(buttons[i]), qPrintable(QString::number(i)));
            for (qsizetype j = i + 1; j < buttons.size(); ++j) {
                QVERIFY2(!buttons[i].intersects(buttons[j]),
                         qPrintable(QStringLiteral("%1 and %2").arg(i).arg(j)));
            }
        }
    }

    // A picker goes back to the settings by a swipe from the left edge, by Escape and by Back.
    void pickersGoBackEveryWay()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".+")));
        QQmlEngine engine;
        prepare(engine);
        QQuickWindow window;
        window.resize(390, 844);
        const std::unique_ptr<QQuickItem> root =
            create(engine, QStringLiteral("SettingsScreen"), QStringLiteral("anchors.fill: parent"), 0);
        QVERIFY(root);
        root->setParentItem(window.contentItem());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const auto shown = [&root](const char *type) {
            for (QQuickItem *item : allItems(root.get())) {
                if (QString::fromLatin1(item->metaObject()->className()).startsWith(QLatin1String(type)) &&
                    item->isVisible())
                    return item;
            }
            return static_cast<QQuickItem *>(nullptr);
        };
        const auto openPicker = [&] {
            // The stack takes no input while a page slides.
            QTest::qWait(600);
            QQuickItem *row = shown("SettingsRow_QML");
            QVERIFY(row);
            QTest::mouseClick(&window, Qt::LeftButton, {},
                              row->mapToScene(row->boundingRect().center()).toPoint());
            QTRY_VERIFY(shown("VeltorFormatPickerScreen_QML"));
        };

        openPicker();
        QTest::mousePress(&window, Qt::LeftButton, {}, QPoint(4, 400));
        for (int x = 20; x <= 200; x += 30) {
            QTest::mouseMove(&window, QPoint(x, 400), 10);
        }
        QTest::mouseRelease(&window, Qt::LeftButton, {}, QPoint(200, 400));
        QTRY_VERIFY(!shown("VeltorFormatPickerScreen_QML"));

        openPicker();
        QTest::keyClick(&window, Qt::Key_Escape);
        QTRY_VERIFY(!shown("VeltorFormatPickerScreen_QML"));

        openPicker();
        QTest::keyClick(&window, Qt::Key_Back);
        QTRY_VERIFY(!shown("VeltorFormatPickerScreen_QML"));
        QVERIFY(shown("SettingsRow_QML"));
    }

    void keypadSpeaksTheUsersLanguage()
    {
        QTranslator german;
        QVERIFY(german.load(QStringLiteral("veltor_de"), QStringLiteral(":/i18n")));
        QCoreApplication::installTranslator(&german);
        QQmlEngine engine;
        prepare(engine);
        QQuickWindow window;
        const std::unique_ptr<QQuickItem> keypad =
            create(engine, QStringLiteral("LatitudeLongitudeKeypadScreen"),
                   QStringLiteral("anchors.fill: parent"), 0);
        QCoreApplication::removeTranslator(&german);
        QVERIFY(keypad);
        keypad->setParentItem(window.contentItem());
        QStringList texts;
        for (QQuickItem *item : allItems(keypad.get()))
            texts += item->property("text").toString();
        QVERIFY2(texts.contains(QStringLiteral("Fertig")), qPrintable(texts.join(u'|')));
        QVERIFY2(texts.contains(QStringLiteral("Nord")), qPrintable(texts.join(u'|')));
        QVERIFY(texts.contains(QStringLiteral("Breite")));
    }
};

QTEST_MAIN(QmlScreensTest)
#include "QmlScreensTest.moc"
