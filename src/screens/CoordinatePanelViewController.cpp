#include "CoordinatePanelViewController.h"

#include "ApplicationStateSystem.h"
#include "PreferencesSystem.h"
#include "Theme.h"

CoordinatePanelViewController::CoordinatePanelViewController(QObject *parent)
    : CoordinatePanelViewController(ApplicationStateSystem::sharedSystem(),
                                    PreferencesSystem::sharedSystem(), parent)
{
}

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

void CoordinatePanelViewController::refreshAxis(double degrees, const Axis &axis, QString &text,
                                                QString &accessibilityLabel)
{
    // The formatter prints the magnitude; the sign picks the letter and the spoken word.
    const bool negative = degrees < 0;
    m_coordinateFormatter.setFormat(m_preferences.coordinateFormat());
    text = m_coordinateFormatter.stringFromDegrees(degrees, negative ? axis.negativeLetter
                                                                     : axis.positiveLetter);
    accessibilityLabel = axis.name + QLatin1Char(' ') +
                         accessibilityStringFromDegrees(m_coordinateFormatter.format(), degrees,
                                                        negative ? axis.negativeWord
                                                                 : axis.positiveWord) +
                         QStringLiteral(", button");
}

void CoordinatePanelViewController::refreshLatitude()
{
    static const Axis latitude{QStringLiteral("latitude"), QStringLiteral("N"), QStringLiteral("S"),
                               QStringLiteral("north"), QStringLiteral("south")};
    refreshAxis(m_state.coordinate().latitude, latitude, m_latitudeText, m_latitudeAccessibilityLabel);
    emit latitudeChanged();
    refit();
}

void CoordinatePanelViewController::refreshLongitude()
{
    static const Axis longitude{QStringLiteral("longitude"), QStringLiteral("E"), QStringLiteral("W"),
                                QStringLiteral("east"), QStringLiteral("west")};
    refreshAxis(m_state.coordinate().longitude, longitude, m_longitudeText,
                m_longitudeAccessibilityLabel);
    emit longitudeChanged();
    refit();
}

void CoordinatePanelViewController::refreshVeltor()
{
    m_veltorFormatter.setFormat(m_preferences.veltorFormat());
    m_veltorText = m_veltorFormatter.stringFromCoordinate(m_state.coordinate());
    m_veltorAccessibilityLabel = spelledOut(m_veltorText);
    emit veltorChanged();
    refit();
}

void CoordinatePanelViewController::setAvailableWidth(qreal width)
{
    if (qFuzzyCompare(width, m_availableWidth))
        return;
    m_availableWidth = width;
    refit();
}

QFont CoordinatePanelViewController::readoutFont() const
{
    QFont font = Theme::readoutFont();
    font.setPixelSize(qRound(m_readoutFit.pixelSize));
    return font;
}

QFont CoordinatePanelViewController::veltorFont() const
{
    QFont font = Theme::titleFont();
    font.setPixelSize(qRound(m_veltorFit.pixelSize));
    return font;
}

void CoordinatePanelViewController::setCaptionWidth(qreal width)
{
    if (qFuzzyCompare(width, m_captionWidth))
        return;
    m_captionWidth = width;
    refit();
}

void CoordinatePanelViewController::refit()
{
    const ReadoutFit readouts =
        ReadoutFit::of({m_latitudeText, m_longitudeText}, Theme::readoutFont(), m_availableWidth,
                       Theme::spacing(), m_captionWidth);
    // The locator keeps its caption beside it where latitude and longitude do.
    const ReadoutFit veltor =
        ReadoutFit::of({m_veltorText}, Theme::titleFont(), m_availableWidth, Theme::spacing(),
                       readouts.stacked ? m_captionWidth : 0.0);
    if (readouts.stacked == m_readoutFit.stacked && readouts.pixelSize == m_readoutFit.pixelSize &&
        veltor.pixelSize == m_veltorFit.pixelSize)
        return;
    m_readoutFit = readouts;
    m_veltorFit = veltor;
    emit fitChanged();
}

QString CoordinatePanelViewController::veltor2AccessibilityLabel() const
{
    return QStringLiteral("veltor ") + m_veltorAccessibilityLabel + QStringLiteral(", button");
}



