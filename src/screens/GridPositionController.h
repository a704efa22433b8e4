#pragma once

#include "DistanceFormatter.h"
#include "NotificationObserver.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

class ApplicationStateSystem;
class PreferencesSystem;
struct CellPosition;

// The strip under the read-outs that tells a rover where the point lies in its locator cell: how
// far each edge is, which cell lies across the nearest one, and the nearest corner. It follows the
// point, the locator precision and the distance units, and shows only when the setting is on.
class GridPositionController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool shown READ shown NOTIFY changed)
    Q_PROPERTY(QString edgesText READ edgesText NOTIFY changed)
    Q_PROPERTY(QString nearestText READ nearestText NOTIFY changed)
    Q_PROPERTY(QString accessibilityLabel READ accessibilityLabel NOTIFY changed)
    // A live fix whose accuracy circle reaches over an edge of its cell: which cells it may be in.
    Q_PROPERTY(bool uncertain READ uncertain NOTIFY changed)
    Q_PROPERTY(QString uncertainText READ uncertainText NOTIFY changed)
    Q_PROPERTY(QString uncertainAccessibilityLabel READ uncertainAccessibilityLabel NOTIFY changed)

public:
    // Over the app's shared systems.
    explicit GridPositionController(QObject *parent = nullptr);
    GridPositionController(ApplicationStateSystem &state, PreferencesSystem &preferences,
                           QObject *parent = nullptr);

    bool shown() const { return m_shown; }
    QString edgesText() const { return m_edgesText; }
    QString nearestText() const { return m_nearestText; }
    QString accessibilityLabel() const { return m_accessibilityLabel; }
    bool uncertain() const { return !m_uncertainText.isEmpty(); }
    QString uncertainText() const { return m_uncertainText; }
    QString uncertainAccessibilityLabel() const { return m_uncertainAccessibilityLabel; }

signals:
    void changed();

private:
    void refresh();
    void refreshUncertainty(const CellPosition &cell);
    QString distance(double metres) const;

    ApplicationStateSystem &m_state;
    PreferencesSystem &m_preferences;
    DistanceFormatter m_distanceFormatter;
    std::optional<NotificationObserver> m_preferencesObserver;
    bool m_shown = false;
    QString m_edgesText, m_nearestText, m_accessibilityLabel;
    QString m_uncertainText, m_uncertainAccessibilityLabel;
};
