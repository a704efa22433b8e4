#include "CoordinatePanelViewController.h"

#include "ApplicationStateSystem.h"
#include "PreferencesSystem.h"

CoordinatePanelViewController::CoordinatePanelViewController(ApplicationStateSystem &state,
                                                             PreferencesSystem &preferences,
                                                             QObject *parent)
    : QObject(parent), m_state(state), m_preferences(preferences)
{
    connect(&m_state, &ApplicationStateSystem::coordinateChanged, this, [this] {
        refreshLatitude();
        refreshLongitude();
        refreshVeltor();
    });
    m_veltorFormatObserver.emplace(QString(PreferencesSystemVeltorFormatDidChangeNotification),
                                   &m_preferences, [this](auto &&...) { refreshVeltor(); },
                                   m_preferences.notificationCenter());
    m_coordinateFormatObserver.emplace(
        QString(PreferencesSystemCoordinateFormatDidChangeNotification), &m_preferences,
        [this](auto &&...) {
            refreshLatitude();
            refreshLongitude();
        },
        m_preferences.notificationCenter());
    refreshLatitude();
    refreshLongitude();
    refreshVeltor();
}

void CoordinatePanelViewController::refreshLatitude()
{
    const double latitude = m_state.coordinate().latitude;
    const bool south = latitude < 0;
    m_coordinateFormatter.setFormat(m_preferences.coordinateFormat());
    m_latitudeText =
        m_coordinateFormatter.stringFromDegrees(latitude, south ? QStringLiteral("S") : QStringLiteral("N"));
    m_latitudeAccessibilityLabel =
        QStringLiteral("latitude ") +
        accessibilityStringFromDegrees(m_coordinateFormatter.format(), latitude,
                                       south ? QStringLiteral("south") : QStringLiteral("north")) +
        QStringLiteral(", button");
    emit latitudeChanged();
}

void CoordinatePanelViewController::refreshLongitude()
{
    const double longitude = m_state.coordinate().longitude;
    const bool west = longitude < 0;
    m_coordinateFormatter.setFormat(m_preferences.coordinateFormat());
    m_longitudeText =
        m_coordinateFormatter.stringFromDegrees(longitude, west ? QStringLiteral("W") : QStringLiteral("E"));
    m_longitudeAccessibilityLabel =
        QStringLiteral("longitude ") +
        accessibilityStringFromDegrees(m_coordinateFormatter.format(), longitude,
                                       west ? QStringLiteral("west") : QStringLiteral("east")) +
        QStringLiteral(", button");
    emit longitudeChanged();
}

void CoordinatePanelViewController::refreshVeltor()
{
    m_veltorFormatter.setFormat(m_preferences.veltorFormat());
    m_veltorText = m_veltorFormatter.stringFromCoordinate(m_state.coordinate());
    m_veltorAccessibilityLabel = spelledOut(m_veltorText);
    emit veltorChanged();
}

QString CoordinatePanelViewController::veltor2AccessibilityLabel() const
{
    return QStringLiteral("veltor ") + m_veltorAccessibilityLabel + QStringLiteral(", button");
}

QString CoordinatePanelViewController::spelledOut(const QString &locator)
{
    QString spelled;
    spelled.reserve(locator.size() * 2);
    for (const QChar c : locator) {
        spelled += c;
        spelled += QLatin1Char(' ');
    }
    return spelled;
}
