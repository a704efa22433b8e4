#pragma once

#include "NotificationObserver.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

class PreferencesSystem;

// The settings: locator precision, coordinate notation and accuracy units, each shown on the
// sample point and leading to its picker; the grid switch; and the appearance. The rows follow
// every write of a setting, so a picker's choice shows before the user comes back.
class SettingsViewController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString veltorFormatDetail READ veltorFormatDetail NOTIFY rowsChanged)
    Q_PROPERTY(QString veltorFormatAccessibilityLabel READ veltorFormatAccessibilityLabel NOTIFY
                   rowsChanged)
    Q_PROPERTY(QString coordinateFormatDetail READ coordinateFormatDetail NOTIFY rowsChanged)
    Q_PROPERTY(QString coordinateFormatAccessibilityLabel READ coordinateFormatAccessibilityLabel
                   NOTIFY rowsChanged)
    Q_PROPERTY(QString distanceFormatDetail READ distanceFormatDetail NOTIFY rowsChanged)
    Q_PROPERTY(QString appearanceDetail READ appearanceDetail NOTIFY rowsChanged)
    Q_PROPERTY(bool showGrid READ showGrid NOTIFY showGridChanged)
    Q_PROPERTY(bool showGridPosition READ showGridPosition NOTIFY showGridPositionChanged)
    Q_PROPERTY(QString crossingAlertDetail READ crossingAlertDetail NOTIFY rowsChanged)
    Q_PROPERTY(bool speakCrossings READ speakCrossings NOTIFY rowsChanged)
    Q_PROPERTY(QString mapSourceDetail READ mapSourceDetail NOTIFY rowsChanged)
    Q_PROPERTY(QString stationDetail READ stationDetail NOTIFY rowsChanged)

public:
    enum Picker
    {
        VeltorFormatPicker,
        CoordinateFormatPicker,
        DistanceFormatPicker,
        AppearancePicker,
        CrossingAlertPicker,
        StationPicker,
        MapSourcePicker
    };
    Q_ENUM(Picker)

    // Over the app's shared preferences.
    explicit SettingsViewController(QObject *parent = nullptr);
    explicit SettingsViewController(PreferencesSystem &preferences, QObject *parent = nullptr);

    QString mapSourceDetail() const { return m_mapSourceDetail; }
    QString stationDetail() const { return m_stationDetail; }
    QString veltorFormatDetail() const { return m_veltorFormatDetail; }
    QString veltorFormatAccessibilityLabel() const { return m_veltorFormatAccessibilityLabel; }
    QString coordinateFormatDetail() const { return m_coordinateFormatDetail; }
    QString coordinateFormatAccessibilityLabel() const
    {
        return m_coordinateFormatAccessibilityLabel;
    }
    QString distanceFormatDetail() const { return m_distanceFormatDetail; }
    QString appearanceDetail() const { return m_appearanceDetail; }
    QString crossingAlertDetail() const { return m_crossingAlertDetail; }
    bool speakCrossings() const { return m_speakCrossings; }
    bool showGrid() const { return m_showGrid; }
    bool showGridPosition() const { return m_showGridPosition; }

    // A tap anywhere on the grid row flips the switch and writes the setting.
    Q_INVOKABLE void toggleShowGrid();
    Q_INVOKABLE void toggleShowGridPosition();
    Q_INVOKABLE void toggleSpeakCrossings();
    Q_INVOKABLE void showPicker(Picker picker) { emit pickerRequested(picker); }
    Q_INVOKABLE void dismiss() { emit dismissRequested(); }

signals:
    void rowsChanged();
    void showGridChanged();
    void showGridPositionChanged();
    void pickerRequested(SettingsViewController::Picker picker);
    void dismissRequested();

private:
    void reloadRows();

    PreferencesSystem &m_preferences;
    std::optional<NotificationObserver> m_veltorFormatObserver;
    std::optional<NotificationObserver> m_coordinateFormatObserver;
    std::optional<NotificationObserver> m_distanceFormatObserver;
    std::optional<NotificationObserver> m_appearanceObserver;
    std::optional<NotificationObserver> m_crossingAlertObserver;
    std::optional<NotificationObserver> m_gpsSourceObserver;
    std::optional<NotificationObserver> m_stationGridObserver;
    std::optional<NotificationObserver> m_mapSourceObserver;
    QString m_veltorFormatDetail;
    QString m_veltorFormatAccessibilityLabel;
    QString m_coordinateFormatDetail;
    QString m_coordinateFormatAccessibilityLabel;
    QString m_distanceFormatDetail;
    QString m_appearanceDetail;
    QString m_crossingAlertDetail;
    QString m_stationDetail;
    QString m_mapSourceDetail;
    bool m_speakCrossings = true;
    bool m_showGrid;
    bool m_showGridPosition;
};
