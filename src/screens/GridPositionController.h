#pragma once

#include "DistanceFormatter.h"
#include "NotificationObserver.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <optional>

class ApplicationStateSystem;
class PreferencesSystem;
struct CellPosition;

// The instrument under the read-outs that tells a rover where the point lies in its locator
// cell: how far each edge is, which cell lies across the nearest one, and the nearest corner, as
// a square of the cell with a distance on each side. It follows the point, the locator precision
// and the distance units, and shows only when the setting is on; a screen reader hears it as one
// sentence.
class GridPositionController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool shown READ shown NOTIFY changed)
    Q_PROPERTY(QString locator READ locator NOTIFY changed)
    // The distance to each edge, as Side numbers them: north, south, east, west.
    Q_PROPERTY(QStringList edgeTexts READ edgeTexts NOTIFY changed)
    Q_PROPERTY(int nearestSide READ nearestSide NOTIFY changed)
    // The cell across the nearest edge; empty at a pole.
    Q_PROPERTY(QString acrossText READ acrossText NOTIFY changed)
    // The nearest corner: 0 north-east, 1 north-west, 2 south-east, 3 south-west.
    Q_PROPERTY(int nearestCorner READ nearestCorner NOTIFY changed)
    Q_PROPERTY(QString cornerText READ cornerText NOTIFY changed)
    // Under the square: the nearest edge with the cell beyond, and the nearest corner.
    Q_PROPERTY(QString detailText READ detailText NOTIFY changed)
    // One line for the folded field panel: the nearest edge, its distance and the cell beyond.
    Q_PROPERTY(QString summaryText READ summaryText NOTIFY changed)
    Q_PROPERTY(QString accessibilityLabel READ accessibilityLabel NOTIFY changed)
    // A live fix whose accuracy circle reaches over an edge of its cell: which cells it may be in,
    // and which edges it reaches over (a bit for each Side).
    Q_PROPERTY(bool uncertain READ uncertain NOTIFY changed)
    Q_PROPERTY(int uncertainSides READ uncertainSides NOTIFY changed)
    Q_PROPERTY(QString uncertainText READ uncertainText NOTIFY changed)
    Q_PROPERTY(QString uncertainAccessibilityLabel READ uncertainAccessibilityLabel NOTIFY changed)

public:
    // Over the app's shared systems.
    explicit GridPositionController(QObject *parent = nullptr);
    GridPositionController(ApplicationStateSystem &state, PreferencesSystem &preferences,
                           QObject *parent = nullptr);

    bool shown() const { return m_shown; }
    QString locator() const { return m_locator; }
    QStringList edgeTexts() const { return m_edgeTexts; }
    int nearestSide() const { return m_nearestSide; }
    QString acrossText() const { return m_acrossText; }
    int nearestCorner() const { return m_nearestCorner; }
    QString cornerText() const { return m_cornerText; }
    QString detailText() const { return m_detailText; }
    QString summaryText() const { return m_summaryText; }
    int uncertainSides() const { return m_uncertainSides; }
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
    QString m_locator, m_acrossText, m_cornerText, m_detailText, m_summaryText,
        m_accessibilityLabel;
    QStringList m_edgeTexts;
    int m_nearestSide = 0;
    int m_nearestCorner = 0;
    int m_uncertainSides = 0;
    QString m_uncertainText, m_uncertainAccessibilityLabel;
};
