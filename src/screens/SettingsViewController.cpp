#include "SettingsViewController.h"

#include "CoordinateFormatter.h"
#include "PreferencesSystem.h"
#include "SettingNames.h"
#include "VeltorFormatter.h"

SettingsViewController::SettingsViewController(QObject *parent)
    : SettingsViewController(PreferencesSystem::sharedSystem(), parent)
{
}

SettingsViewController::SettingsViewController(PreferencesSystem &preferences, QObject *parent)
    : QObject(parent), m_preferences(preferences), m_showGrid(preferences.showGrid()),
      m_showGridPosition(preferences.showGridPosition())
{
    const auto reload = [this](auto &&...) { reloadRows(); };
    NotificationCenter &center = m_preferences.notificationCenter();
    m_veltorFormatObserver.emplace(QString(PreferencesSystemVeltorFormatDidChangeNotification),
                                   &m_preferences, reload, center);
    m_coordinateFormatObserver.emplace(
        QString(PreferencesSystemCoordinateFormatDidChangeNotification), &m_preferences, reload,
        center);
    m_distanceFormatObserver.emplace(QString(PreferencesSystemDistanceFormatDidChangeNotification),
                                     &m_preferences, reload, center);
    m_appearanceObserver.emplace(QString(PreferencesSystemAppearanceDidChangeNotification),
                                 &m_preferences, reload, center);
    m_crossingAlertObserver.emplace(QString(PreferencesSystemCrossingAlertDidChangeNotification),
                                    &m_preferences, reload, center);
    m_gpsSourceObserver.emplace(QString(PreferencesSystemGpsSourceDidChangeNotification),
                                &m_preferences, reload, center);
    m_mapSourceObserver.emplace(QString(PreferencesSystemMapSourceDidChangeNotification),
                                &m_preferences, reload, center);
    m_stationGridObserver.emplace(QString(PreferencesSystemStationGridDidChangeNotification),
                                  &m_preferences, reload, center);
    reloadRows();
}

void SettingsViewController::reloadRows()
{
    constexpr Coordinate sample = SettingNames::samplePoint;
    VeltorFormatter veltorFormatter;
    veltorFormatter.setFormat(m_preferences.veltorFormat());
    m_veltorFormatDetail = veltorFormatter.stringFromCoordinate(sample);
    m_veltorFormatAccessibilityLabel = spelledOut(m_veltorFormatDetail);
    CoordinateFormatter coordinateFormatter;
    coordinateFormatter.setFormat(m_preferences.coordinateFormat());
    m_coordinateFormatDetail =
        coordinateFormatter.stringFromDegrees(sample.latitude, QStringLiteral("N"));
    m_coordinateFormatAccessibilityLabel = accessibilityStringFromDegrees(
        coordinateFormatter.format(), sample.latitude, QStringLiteral("north"));
    m_distanceFormatDetail = SettingNames::distanceFormat(m_preferences.distanceFormat());
    m_appearanceDetail = SettingNames::appearance(m_preferences.appearance());
    m_crossingAlertDetail = SettingNames::crossingAlert(m_preferences.crossingAlert());
    m_speakCrossings = m_preferences.speakCrossings();
    m_stationDetail = SettingNames::station(m_preferences);
    m_mapSourceDetail = SettingNames::mapSource(m_preferences.mapSource());
    emit rowsChanged();
}

void SettingsViewController::toggleShowGrid()
{
    m_showGrid = !m_showGrid;
    emit showGridChanged();
    m_preferences.setShowGrid(m_showGrid);
}

void SettingsViewController::toggleShowGridPosition()
{
    m_showGridPosition = !m_showGridPosition;
    emit showGridPositionChanged();
    m_preferences.setShowGridPosition(m_showGridPosition);
}

void SettingsViewController::toggleSpeakCrossings()
{
    m_preferences.setSpeakCrossings(!m_preferences.speakCrossings());
}
