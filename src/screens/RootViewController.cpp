#include "RootViewController.h"

#include "LocationTrackingSystem.h"
#include "Theme.h"
#include "UserDefaults.h"

#include <QTimer>
#include <QWindow>

#include <algorithm>

namespace {

const QString latitudeKeypad = QStringLiteral("latitude-keypad");
const QString longitudeKeypad = QStringLiteral("longitude-keypad");
const QString veltorKeypad = QStringLiteral("locator-keypad");
const QString settings = QStringLiteral("settings");
const QString station = QStringLiteral("station");
const QString keepArea = QStringLiteral("keep-area");
const QString menu = QStringLiteral("menu");
const QString share = QStringLiteral("share");
const QString welcome = QStringLiteral("welcome");
const QString welcomeDismissedKey = QStringLiteral("WelcomeDismissed");

} // namespace

RootViewController::RootViewController(QObject *parent)
    : RootViewController(LocationTrackingSystem::sharedSystem(),
                         UserDefaults::standardUserDefaults(), parent)
{
}

RootViewController::RootViewController(LocationTrackingSystem &tracking, UserDefaults &defaults,
                                       QObject *parent)
    : QObject(parent), m_defaults(defaults)
{
    connect(&tracking, &LocationTrackingSystem::alertRequested, this,
            [this](const QString &title, const QString &message, const QString &dismissButton) {
                //: Button of the message that the position cannot be used: opens the GPS settings
                //% "GPS Settings"
                emit alertRequested(title, message, dismissButton, qtTrId("root.gps-settings"));
            });
    connect(&defaults, &UserDefaults::storeFailed, this, [this](const QString &message) {
        m_bannerMessage = message;
        emit bannerMessageChanged();
    });
    m_bannerMessage = defaults.readProblem().value_or(QString());
}

bool RootViewController::toolbarHolds(ToolAction action, qreal width) const
{
    if (width < toolbarWidth)
        return false;
    switch (action) {
    case ToolAction::Share:
    case ToolAction::SetTarget:
    case ToolAction::SaveProof:
    case ToolAction::Menu:
        return true;
    // Room for their labels in every language only in a wider window still.
    case ToolAction::KeepArea:
    case ToolAction::Settings:
        return width >= roomyToolbarWidth;
    default:
        return false;
    }
}

bool RootViewController::mapHolds(ToolAction action, qreal width) const
{
    return width < toolbarWidth && (action == ToolAction::Share || action == ToolAction::Menu);
}

bool RootViewController::menuHolds(ToolAction action, qreal width, bool targetSet) const
{
    if (action == ToolAction::Share || action == ToolAction::Menu)
        return false;
    if (action == ToolAction::ClearTarget && !targetSet)
        return false;
    return !toolbarHolds(action, width);
}

QStringList RootViewController::screenNames()
{
    return {latitudeKeypad, longitudeKeypad, veltorKeypad, settings, station, keepArea,
            menu,           share,           welcome};
}

int RootViewController::fullScreenToggled(int visibility)
{
    return visibility == QWindow::FullScreen ? QWindow::Windowed : QWindow::FullScreen;
}

void RootViewController::dismissBanner()
{
    if (m_bannerMessage.isEmpty())
        return;
    m_bannerMessage.clear();
    emit bannerMessageChanged();
}

void RootViewController::setTablet(bool tablet)
{
    if (tablet == m_tablet)
        return;
    m_tablet = tablet;
    emit tabletChanged();
}

bool RootViewController::isRegularWidth(qreal width, qreal height) const
{
    return width >= 600.0 || (!m_tablet && width > height);
}

QRectF RootViewController::panelRect(qreal width, qreal height, qreal panelHeight) const
{
    constexpr qreal column = 400.0;
    constexpr qreal twoColumns = 2 * column - 40.0;
    if (panelHoldsToolsBeside(width))
        return {0.0, 0.0, std::min(twoColumns, width * 0.4), height};
    if (isRegularWidth(width, height))
        return {0.0, 0.0, std::min(column, width / 2), height};
    // However far the user unfolds the tools, a strip of map stays to press and pan; the panel
    // scrolls above it.
    const qreal map = std::min(height / 2, std::max(height / 4, 2 * Theme::minimumTouchSize()));
    return {0.0, 0.0, width, std::clamp(panelHeight, 0.0, height - map)};
}

QRectF RootViewController::dividerRect(qreal width, qreal height, qreal panelHeight,
                                       qreal devicePixelRatio) const
{
    const qreal hairline = Theme::hairline(devicePixelRatio);
    const QRectF panel = panelRect(width, height, panelHeight);
    if (isRegularWidth(width, height))
        return {panel.right(), 0.0, hairline, height};
    return {0.0, panel.bottom(), width, hairline};
}

QRectF RootViewController::mapRect(qreal width, qreal height, qreal panelHeight,
                                   qreal devicePixelRatio) const
{
    const QRectF divider = dividerRect(width, height, panelHeight, devicePixelRatio);
    if (isRegularWidth(width, height))
        return {divider.right(), 0.0, std::max(0.0, width - divider.right()), height};
    return {0.0, divider.bottom(), width, std::max(0.0, height - divider.bottom())};
}

bool RootViewController::panelShowsLocator(qreal width, qreal area, qreal window, qreal readouts,
                                           qreal locator, qreal foldedTools) const
{
    if (isRegularWidth(width, area))
        return true;
    return readouts + locator + foldedTools <= area - window / 2;
}

bool RootViewController::fieldToolsFolded(FieldToolsFolding folding, qreal width, qreal area,
                                          qreal window, qreal readouts, qreal locator,
                                          qreal foldedTools, qreal tools) const
{
    if (isRegularWidth(width, area))
        return false;
    if (folding != FieldToolsFolding::Automatic)
        return folding == FieldToolsFolding::Folded;
    const qreal shownLocator =
        panelShowsLocator(width, area, window, readouts, locator, foldedTools) ? locator : 0.0;
    return readouts + shownLocator + tools > area - window / 2;
}

void RootViewController::setFieldToolsFolded(bool folded)
{
    const FieldToolsFolding folding =
        folded ? FieldToolsFolding::Folded : FieldToolsFolding::Unfolded;
    if (folding == m_fieldToolsFolding)
        return;
    m_fieldToolsFolding = folding;
    emit fieldToolsFoldingChanged();
}

void RootViewController::setInitialScreen(const QString &screen)
{
    if (screen == m_initialScreen)
        return;
    m_initialScreen = screen;
    emit initialScreenChanged();
}

bool RootViewController::welcomeShown() const
{
    return m_welcomeAsked || (m_welcomeOffered && !m_defaults.boolForKey(welcomeDismissedKey));
}

void RootViewController::setWelcomeOffered(bool offered)
{
    if (offered == m_welcomeOffered)
        return;
    m_welcomeOffered = offered;
    emit welcomeShownChanged();
}

void RootViewController::dismissWelcome()
{
    m_welcomeAsked = false;
    m_defaults.setBool(true, welcomeDismissedKey);
    m_defaults.synchronize();
    emit welcomeShownChanged();
}

QString RootViewController::welcomeMenuText(qreal width) const
{
    if (toolbarHolds(ToolAction::Menu, width)) {
        //: First-run card, wide window: where the menu of tools is
        //% "Menu, at the right of the toolbar, holds the target, proofs, offline areas and the settings."
        return qtTrId("welcome.menu.toolbar");
    }
    //: First-run card, phone: where the menu of tools is
    //% "Menu, at the top left of the map, holds the target, proofs, offline areas and the settings."
    return qtTrId("welcome.menu.map");
}

bool RootViewController::openScreen(const QString &name)
{
    if (name == latitudeKeypad)
        emit latitudeKeypadRequested();
    else if (name == longitudeKeypad)
        emit longitudeKeypadRequested();
    else if (name == veltorKeypad)
        emit veltorKeypadRequested();
    else if (name == settings)
        emit settingsRequested();
    else if (name == station)
        emit stationSettingsRequested();
    else if (name == keepArea)
        emit keepAreaRequested();
    else if (name == menu)
        emit menuRequested();
    else if (name == share)
        emit shareSheetRequested();
    else if (name == welcome) {
        m_welcomeAsked = true;
        emit welcomeShownChanged();
    } else
        return false;
    return true;
}

void RootViewController::componentComplete()
{
    if (m_initialScreen.isEmpty())
        return;
    // After the whole window is built, so the host that presents screens exists.
    QTimer::singleShot(0, this, [this] { openScreen(m_initialScreen); });
}
