#pragma once

#include "DistanceFormatter.h"
#include "NotificationObserver.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

class ApplicationStateSystem;
class PreferencesSystem;

// The accuracy read-out of the toolbar: shown while a live fix with a known accuracy exists,
// in the user's units; otherwise transparent, so the toolbar does not move.
class RootCoordinatePanelController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString accuracyText READ accuracyText NOTIFY accuracyChanged)
    Q_PROPERTY(qreal accuracyOpacity READ accuracyOpacity NOTIFY accuracyChanged)

public:
    // Over the app's shared systems.
    explicit RootCoordinatePanelController(QObject *parent = nullptr);
    RootCoordinatePanelController(ApplicationStateSystem &state, PreferencesSystem &preferences,
                                  QObject *parent = nullptr);

    QString accuracyText() const { return m_accuracyText; }
    qreal accuracyOpacity() const { return m_accuracyOpacity; }

signals:
    void accuracyChanged();

private:
    void refresh();

    ApplicationStateSystem &m_state;
    PreferencesSystem &m_preferences;
    DistanceFormatter m_distanceFormatter;
    std::optional<NotificationObserver> m_distanceFormatObserver;
    QString m_accuracyText;
    qreal m_accuracyOpacity = 0.0;
};
