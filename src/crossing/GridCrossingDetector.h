#pragma once

#include "Coordinate.h"
#include "VeltorFormat.h"

#include <QString>

#include <optional>

// Decides when a moving fix has entered another locator cell. A crossing counts only once the fix
// lies inside the new cell by more than its accuracy, and at least 10 m, so a receiver parked on
// a line, or wandering along one, never chatters.
class GridCrossingDetector
{
public:
    static constexpr double minimumMarginMetres = 10.0;

    explicit GridCrossingDetector(VeltorFormat precision) : m_precision(precision) {}

    // The cell of the first fix after a reset is where the fix is, and no crossing.
    void reset() { m_cell.clear(); }
    // A new fix with its accuracy in metres (not finite or negative: unknown, the minimum margin).
    // Answers the locator entered when this fix completes a crossing.
    std::optional<QString> update(Coordinate point, double accuracyMetres);
    QString cell() const { return m_cell; }

private:
    VeltorFormat m_precision;
    QString m_cell;
};
