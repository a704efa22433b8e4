#pragma once

#include "GridCrossingDetector.h"
#include "NotificationObserver.h"
#include "StationGridSender.h"

#include <QObject>
#include <QString>

#include <optional>

class ApplicationStateSystem;
class PreferencesSystem;

// While the point is live-tracked, keeps WSJT-X and JS8Call told the 6-character locator of the
// cell the station is in, as the user's settings ask. A typed point is never sent.
class StationGridPublisher : public QObject
{
    Q_OBJECT

public:
    StationGridPublisher(ApplicationStateSystem &state, PreferencesSystem &preferences,
                         QObject *parent = nullptr);
    ~StationGridPublisher() override;

    // The app's feed, over its shared systems: the settings screen and the GPS state line show
    // what it says.
    static StationGridPublisher &sharedSystem();

    // Where the grid goes; the settings rows ask it whether an address is usable.
    const StationGridSender &gridSender() const { return m_sender; }

private:
    void configure();
    void fix();
    void stop();

    ApplicationStateSystem &m_state;
    PreferencesSystem &m_preferences;
    StationGridSender m_sender;
    // Cells change only once a fix is well inside the next one, so a station parked on a line
    // does not flip its grid back and forth.
    GridCrossingDetector m_detector{VeltorFormat::SixCharacters};
    QString m_sent;
    std::optional<NotificationObserver> m_settingObserver;
};
