#include "ScaleBar.h"

#include "LocalizedFormat.h"

#include <cmath>
#include <cstdint>

namespace {

constexpr double metresPerFoot = 0.3048;
constexpr double feetPerMile = 5280.0;

// The largest 1, 2 or 5 times a power of ten that is at most the value.
double roundDown(double value)
{
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    for (const double step : {5.0, 2.0, 1.0}) {
        if (step * power <= value)
            return step * power;
    }
    return power;
}

} // namespace

ScaleBar ScaleBar::of(double metresPerPoint, DistanceFormat units, double longest)
{
    ScaleBar bar;
    if (!(metresPerPoint > 0.0) || !std::isfinite(metresPerPoint) || !(longest > 0.0))
        return bar;
    const double ground = metresPerPoint * longest;
    const auto text = [](const char *key, double value) {
        return localizedStringWithFormat(qtTrId(key), std::int64_t(std::llround(value)));
    };
    if (units == DistanceFormat::Metric) {
        const double metres = roundDown(ground);
        bar.length = metres / metresPerPoint;
        bar.text = metres >= 1000.0 ? text("distance.kilometers.long.integral", metres / 1000.0)
                                    : text("distance.meters.long", metres);
        return bar;
    }
    const double feet = ground / metresPerFoot;
    if (feet < feetPerMile) {
        const double shown = roundDown(feet);
        bar.length = shown * metresPerFoot / metresPerPoint;
        bar.text = text("distance.feet.long", shown);
        return bar;
    }
    const double miles = roundDown(feet / feetPerMile);
    bar.length = miles * feetPerMile * metresPerFoot / metresPerPoint;
    bar.text = text("distance.miles.long.integral", miles);
    return bar;
}
