#pragma once

#include <QObject>
#include <QQmlParserStatus>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

class LocationTrackingSystem;
class UserDefaults;

// The root screen: the window's title, a banner when the settings cannot be saved, the
// tracking system's alerts and the screen to open at launch. Screens open only through its
// requests and the panels', so the root's host alone presents them.
class RootViewController : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    QML_ELEMENT
    Q_INTERFACES(QQmlParserStatus)
    Q_PROPERTY(QString bannerMessage READ bannerMessage NOTIFY bannerMessageChanged)
    Q_PROPERTY(bool bannerVisible READ bannerVisible NOTIFY bannerMessageChanged)
    // The device is a tablet (else a phone): how wide the layout counts in landscape.
    Q_PROPERTY(bool tablet READ isTablet WRITE setTablet NOTIFY tabletChanged)
    // A screen from screenNames(), opened once the root screen is complete; empty for none.
    Q_PROPERTY(
        QString initialScreen READ initialScreen WRITE setInitialScreen NOTIFY initialScreenChanged)
    // Whether the field tools fold by the room left for the map, or as the user last tapped.
    Q_PROPERTY(FieldToolsFolding fieldToolsFolding READ fieldToolsFolding NOTIFY
                   fieldToolsFoldingChanged)
    // The card that teaches the first run: on every launch until the user dismisses it, unless
    // the launch is not for a person (a screenshot) and it was not asked for by name.
    Q_PROPERTY(bool welcomeShown READ welcomeShown NOTIFY welcomeShownChanged)
    Q_PROPERTY(bool welcomeOffered READ welcomeOffered WRITE setWelcomeOffered NOTIFY
                   welcomeShownChanged)

public:
    enum class FieldToolsFolding { Automatic, Folded, Unfolded };
    Q_ENUM(FieldToolsFolding)
    // What the map's tools offer beyond the read-outs: sharing, the target, the field's records
    // and the set-up.
    enum class ToolAction {
        Share,
        Menu,
        SetTarget,
        TypeTarget,
        ClearTarget,
        SaveProof,
        KeepArea,
        MapSource,
        Station,
        Settings
    };
    Q_ENUM(ToolAction)
    // From this width the tools are labelled actions in the toolbar, as on a desktop.
    static constexpr qreal toolbarWidth = 1024.0;
    static constexpr qreal roomyToolbarWidth = 1440.0;

    explicit RootViewController(QObject *parent = nullptr);
    RootViewController(LocationTrackingSystem &tracking, UserDefaults &defaults,
                       QObject *parent = nullptr);

    // The screens that can be opened by name, as the app's --open takes them.
    static QStringList screenNames();

    QString bannerMessage() const { return m_bannerMessage; }
    bool bannerVisible() const { return !m_bannerMessage.isEmpty(); }
    bool isTablet() const { return m_tablet; }
    void setTablet(bool tablet);

    // Regular width puts the panels side by side: a window 600 points wide or more, and a
    // phone turned sideways (although its width may be less).
    Q_INVOKABLE bool isRegularWidth(qreal width, qreal height) const;
    // Where the coordinate panel, the divider and the map stand in an area of WIDTH × HEIGHT:
    // side by side in regular width (the panel a column of at most 400 points), else the panel
    // at the top at its own height, scrolling where that would leave less than a quarter of the
    // area to the map. The divider is one device pixel across.
    // From roomyToolbarWidth the column widens to hold the field tools beside the read-outs.
    Q_INVOKABLE QRectF panelRect(qreal width, qreal height, qreal panelHeight) const;
    Q_INVOKABLE bool panelHoldsToolsBeside(qreal width) const { return width >= roomyToolbarWidth; }
    Q_INVOKABLE QRectF dividerRect(qreal width, qreal height, qreal panelHeight,
                                   qreal devicePixelRatio) const;
    Q_INVOKABLE QRectF mapRect(qreal width, qreal height, qreal panelHeight,
                               qreal devicePixelRatio) const;

    // How the panel shares a narrow window with the map, which keeps at least half of the
    // window's height: the field tools fold to one line, unless the user tapped them open (or
    // shut), and in a window too short even then the locator shows in the toolbar alone. Heights
    // are those the panel's parts would take: the latitude and longitude, the locator, the field
    // tools folded and unfolded; AREA is the height under the toolbar, WINDOW the whole window's.
    Q_INVOKABLE bool panelShowsLocator(qreal width, qreal area, qreal window, qreal readouts,
                                       qreal locator, qreal foldedTools) const;
    Q_INVOKABLE bool fieldToolsFolded(FieldToolsFolding folding, qreal width, qreal area,
                                      qreal window, qreal readouts, qreal locator,
                                      qreal foldedTools, qreal tools) const;
    FieldToolsFolding fieldToolsFolding() const { return m_fieldToolsFolding; }
    // The user's tap on the field tools' head: they stay that way at every window size.
    Q_INVOKABLE void setFieldToolsFolded(bool folded);

    QString initialScreen() const { return m_initialScreen; }
    void setInitialScreen(const QString &screen);

    // Where each tool is at a window's width: labelled in the toolbar of a wide window, round
    // over the map (Share and Menu) of a narrow one, and in the menu the rest. Clear Target only
    // while there is a target.
    Q_INVOKABLE bool toolbarHolds(ToolAction action, qreal width) const;
    Q_INVOKABLE bool mapHolds(ToolAction action, qreal width) const;
    Q_INVOKABLE bool menuHolds(ToolAction action, qreal width, bool targetSet) const;

    Q_INVOKABLE void showSettings() { emit settingsRequested(); }
    Q_INVOKABLE void showStationSettings() { emit stationSettingsRequested(); }
    Q_INVOKABLE void showMapSourceSettings() { emit mapSourceSettingsRequested(); }
    // The user has read the banner.
    Q_INVOKABLE void dismissBanner();
    bool welcomeShown() const;
    bool welcomeOffered() const { return m_welcomeOffered; }
    void setWelcomeOffered(bool offered);
    // Gone for good: no later launch shows the card again.
    Q_INVOKABLE void dismissWelcome();
    // The card's line on the menu, which is over the map or in the toolbar by the width.
    Q_INVOKABLE QString welcomeMenuText(qreal width) const;
    // F11: full screen from any other state, and back to a window from full screen.
    Q_INVOKABLE static int fullScreenToggled(int visibility);
    // Asks for the screen of that name; false if there is none of that name.
    Q_INVOKABLE bool openScreen(const QString &name);

    void classBegin() override {}
    void componentComplete() override;

signals:
    void bannerMessageChanged();
    void initialScreenChanged();
    void tabletChanged();
    void fieldToolsFoldingChanged();
    void welcomeShownChanged();
    void settingsRequested();
    void stationSettingsRequested();
    void mapSourceSettingsRequested();
    void keepAreaRequested();
    void menuRequested();
    void shareSheetRequested();
    void latitudeKeypadRequested();
    void longitudeKeypadRequested();
    void veltorKeypadRequested();
    // Ask the user's attention: a title, a message and one button that only dismisses; and,
    // when the GPS could not be used, a second one to its settings (empty for none).
    void alertRequested(const QString &title, const QString &message, const QString &dismissButton,
                        const QString &settingsButton);

private:
    UserDefaults &m_defaults;
    bool m_welcomeOffered = true;
    bool m_welcomeAsked = false;
    bool m_tablet = false;
    FieldToolsFolding m_fieldToolsFolding = FieldToolsFolding::Automatic;
    QString m_bannerMessage;
    QString m_initialScreen;
};
