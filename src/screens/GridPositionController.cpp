#include "GridPositionController.h"

#include "ApplicationStateSystem.h"
#include "CellPosition.h"
#include "PreferencesSystem.h"
#include "VeltorFormatter.h"

#include <cmath>

namespace {

QString sideName(CellPosition::Side side)
{
    switch (side) {
    case CellPosition::North:
        //: Nearest edge of the locator cell, in the grid position strip
        //% "north"
        return qtTrId("grid-position.north");
    case CellPosition::South:
        //% "south"
        return qtTrId("grid-position.south");
    case CellPosition::East:
        //% "east"
        return qtTrId("grid-position.east");
    case CellPosition::West:
        //% "west"
        return qtTrId("grid-position.west");
    }
    return {};
}

// The compass letter of an edge, beside its distance on the instrument.
QString sideLetter(CellPosition::Side side)
{
    switch (side) {
    case CellPosition::North:
        //: The compass letter of north, beside the distance to the cell's north edge
        //% "N"
        return qtTrId("grid-position.north-letter");
    case CellPosition::South:
        //% "S"
        return qtTrId("grid-position.south-letter");
    case CellPosition::East:
        //% "E"
        return qtTrId("grid-position.east-letter");
    case CellPosition::West:
        //% "W"
        return qtTrId("grid-position.west-letter");
    }
    return {};
}

// Locators as a screen reader should say them, one after another.
QString spelledList(const QStringList &locators, const QString &separator)
{
    QStringList spelled;
    for (const QString &locator : locators)
        spelled.append(spelledOut(locator).trimmed());
    return spelled.join(separator);
}

} // namespace

GridPositionController::GridPositionController(QObject *parent)
    : GridPositionController(ApplicationStateSystem::sharedSystem(),
                             PreferencesSystem::sharedSystem(), parent)
{
}

GridPositionController::GridPositionController(ApplicationStateSystem &state,
                                               PreferencesSystem &preferences, QObject *parent)
    : QObject(parent), m_state(state), m_preferences(preferences)
{
    for (const auto signal : {&ApplicationStateSystem::coordinateChanged,
                              &ApplicationStateSystem::coordinateAccuracyChanged,
                              &ApplicationStateSystem::coordinateIsLiveTrackedChanged})
        connect(&m_state, signal, this, &GridPositionController::refresh);
    // Precision, units and the switch itself all change what the strip says.
    m_preferencesObserver.emplace(std::nullopt, &m_preferences, [this](auto &&...) { refresh(); },
                                  m_preferences.notificationCenter());
    refresh();
}

QString GridPositionController::distance(double metres) const
{
    return m_distanceFormatter.stringForObjectValue(metres).value_or(QString());
}

void GridPositionController::refreshUncertainty(const CellPosition &cell)
{
    m_uncertainText.clear();
    m_uncertainAccessibilityLabel.clear();
    m_uncertainSides = 0;
    const std::optional<double> accuracy = m_state.coordinateAccuracy();
    if (!m_state.coordinateIsLiveTracked() || !accuracy || !std::isfinite(*accuracy) ||
        *accuracy <= 0.0)
        return;
    const QStringList others = cell.cellsWithin(*accuracy);
    if (others.isEmpty())
        return;
    for (const CellPosition::Side side :
         {CellPosition::North, CellPosition::South, CellPosition::East, CellPosition::West}) {
        if (!cell.edge(side).across.isEmpty() && cell.edge(side).metres <= *accuracy)
            m_uncertainSides |= 1 << side;
    }
    //: Between the other locators a fix may lie in, when its accuracy reaches over an edge
    //% " or "
    const QString orWord = qtTrId("grid-position.or");
    const QString within = distance(*accuracy);
    //: The fix's locator, the other locators its accuracy circle reaches into, the accuracy
    //% "%1, or %2 within ± %3"
    m_uncertainText = qtTrId("grid-position.uncertain").arg(cell.locator, others.join(orWord), within);
    //: Spoken: the fix's locator, the other locators it may be in, the accuracy
    //% "Uncertain: %1, or %2 within plus or minus %3"
    m_uncertainAccessibilityLabel = qtTrId("grid-position.uncertain-spoken")
                                        .arg(spelledOut(cell.locator).trimmed(),
                                             spelledList(others, orWord), within);
}

void GridPositionController::refresh()
{
    m_shown = m_preferences.showGridPosition();
    const Coordinate point = m_state.coordinate();
    if (!std::isfinite(point.latitude) || !std::isfinite(point.longitude)) {
        m_shown = false;
        m_uncertainText.clear();
        m_uncertainSides = 0;
        emit changed();
        return;
    }
    m_distanceFormatter.setFormat(m_preferences.distanceFormat());
    const CellPosition cell = CellPosition::of(point, m_preferences.veltorFormat());
    refreshUncertainty(cell);
    if (!m_shown) {
        emit changed();
        return;
    }
    m_locator = cell.locator;
    m_edgeTexts.clear();
    for (const CellPosition::Side side :
         {CellPosition::North, CellPosition::South, CellPosition::East, CellPosition::West}) {
        //: An edge's compass letter and the distance to it, on a side of the cell's square
        //% "%1 %2"
        m_edgeTexts.append(qtTrId("grid-position.edge")
                               .arg(sideLetter(side), distance(cell.edge(side).metres)));
    }
    const QString north = distance(cell.edge(CellPosition::North).metres);
    const QString south = distance(cell.edge(CellPosition::South).metres);
    const QString east = distance(cell.edge(CellPosition::East).metres);
    const QString west = distance(cell.edge(CellPosition::West).metres);

    const CellPosition::Side side = cell.nearestSide();
    m_nearestSide = side;
    m_acrossText = cell.edge(side).across;
    const bool northern = cell.corner.latitude >= point.latitude;
    const bool eastern = cell.corner.longitude >= point.longitude;
    m_nearestCorner = (northern ? 0 : 2) + (eastern ? 0 : 1);
    const QString corner = distance(cell.cornerMetres);
    const QString bearing = QString::number(std::lround(cell.cornerBearing) % 360);
    //: The nearest corner of the cell: its distance and bearing in degrees
    //% "Corner %1 at %2°"
    m_cornerText = qtTrId("grid-position.corner").arg(corner, bearing);
    const QString edge = qtTrId("grid-position.edge").arg(sideLetter(side), distance(cell.edge(side).metres));
    const QString nearest = m_acrossText.isEmpty()
                                //: Under the cell's square: the nearest edge, which is a pole
                                //% "Edge %1, the pole"
                                ? qtTrId("grid-position.summary-pole").arg(edge)
                                //: Under the cell's square: the nearest edge and its distance, the
                                //: cell beyond
                                //% "Edge %1 → %2"
                                : qtTrId("grid-position.summary").arg(edge, m_acrossText);
    //: Folded field panel, which must fit one line of a phone: the nearest edge and its distance
    //% "Edge %1"
    m_summaryText = qtTrId("grid-position.folded").arg(edge);
    //: Under the cell's square: the nearest edge with the cell beyond, then the corner
    //% "%1 · %2"
    m_detailText = qtTrId("grid-position.detail").arg(nearest, m_cornerText);

    const QString spokenCells = spelledList(cell.cornerLocators, QStringLiteral(", "));
    const QString spokenEdges =
        //: Spoken: the distances to the four edges of the locator cell
        //% "Grid position: north edge %1, south edge %2, east edge %3, west edge %4."
        qtTrId("grid-position.edges-spoken").arg(north, south, east, west);
    if (m_acrossText.isEmpty()) {
        //% "Nearest edge %1, at the pole. Nearest corner %2 at %3 degrees, where %4 meet."
        m_accessibilityLabel = spokenEdges + QLatin1Char(' ') +
                               qtTrId("grid-position.nearest-pole-spoken")
                                   .arg(sideName(side), corner, bearing, spokenCells);
    } else {
        //% "Nearest edge %1, with %2 beyond. Nearest corner %3 at %4 degrees, where %5 meet."
        m_accessibilityLabel =
            spokenEdges + QLatin1Char(' ') +
            qtTrId("grid-position.nearest-spoken")
                .arg(sideName(side), spelledOut(m_acrossText).trimmed(), corner, bearing,
                     spokenCells);
    }
    emit changed();
}
