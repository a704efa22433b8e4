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
    const std::optional<double> accuracy = m_state.coordinateAccuracy();
    if (!m_state.coordinateIsLiveTracked() || !accuracy || !std::isfinite(*accuracy) ||
        *accuracy <= 0.0)
        return;
    const QStringList others = cell.cellsWithin(*accuracy);
    if (others.isEmpty())
        return;
    //: Between the other locators a fix may lie in, when its accuracy reaches over an edge
    //% " or "
    const QString orWord = qtTrId("grid-position.or");
    const QString within = distance(*accuracy);
    //: The fix's locator, the other locators its accuracy circle reaches into, the accuracy
    //% "%1, or %2 within ± %3"
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
    const QString north = distance(cell.edge(CellPosition::North).metres);
    const QString south = distance(cell.edge(CellPosition::South).metres);
    const QString east = distance(cell.edge(CellPosition::East).metres);
    const QString west = distance(cell.edge(CellPosition::West).metres);
    //: The distances to the four edges of the locator cell: north, south, east, west
    //% "N %1 · S %2 · E %3 · W %4"
    m_edgesText = qtTrId("grid-position.edges").arg(north, south, east, west);

    const CellPosition::Side side = cell.nearestSide();
    const QString across = cell.edge(side).across;
    const QString corner = distance(cell.cornerMetres);
    const QString bearing = QString::number(std::lround(cell.cornerBearing) % 360);
    const QString cells = cell.cornerLocators.join(QStringLiteral(", "));
    const QString spokenCells = spelledList(cell.cornerLocators, QStringLiteral(", "));
    const QString spokenEdges =
        //: Spoken: the distances to the four edges of the locator cell
        //% "Grid position: north edge %1, south edge %2, east edge %3, west edge %4."
        qtTrId("grid-position.edges-spoken").arg(north, south, east, west);
    if (across.isEmpty()) {
        //: The nearest edge of the cell is a pole; then the nearest corner, its distance, its
        //: bearing in degrees and the cells that meet there
        //% "Nearest edge %1, the pole. Corner %2 at %3°: %4"
        m_nearestText = qtTrId("grid-position.nearest-pole").arg(sideName(side), corner, bearing, cells);
        //% "Nearest edge %1, at the pole. Nearest corner %2 at %3 degrees, where %4 meet."
        m_accessibilityLabel = spokenEdges + QLatin1Char(' ') +
                               qtTrId("grid-position.nearest-pole-spoken")
                                   .arg(sideName(side), corner, bearing, spokenCells);
    } else {
        //: The nearest edge of the cell and the cell across it; then the nearest corner, its
        //: distance, its bearing in degrees and the cells that meet there
        //% "Nearest edge %1, %2 beyond. Corner %3 at %4°: %5"
        m_nearestText = qtTrId("grid-position.nearest").arg(sideName(side), across, corner, bearing, cells);
        //% "Nearest edge %1, with %2 beyond. Nearest corner %3 at %4 degrees, where %5 meet."
        m_accessibilityLabel =
            spokenEdges + QLatin1Char(' ') +
            qtTrId("grid-position.nearest-spoken")
                .arg(sideName(side), spelledOut(across).trimmed(), corner, bearing, spokenCells);
    }
    emit changed();
}
