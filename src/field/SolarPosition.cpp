#include "SolarPosition.h"

#include <QtMath>

#include <cmath>

namespace {

double degreesSin(double degrees)
{
    return std::sin(qDegreesToRadians(degrees));
}

double degreesCos(double degrees)
{
    return std::cos(qDegreesToRadians(degrees));
}

// Julian centuries since J2000.0; UTC stands in for terrestrial time, a minute's difference at most.
double centuriesSinceJ2000(const QDateTime &when)
{
    constexpr qint64 j2000MSecs = 946'728'000'000; // 2000-01-01 12:00 UTC
    return double(when.toMSecsSinceEpoch() - j2000MSecs) / (36525.0 * 86'400'000.0);
}

} // namespace

double SolarPosition::elevation(const QDateTime &when, Coordinate at)
{
    const double t = centuriesSinceJ2000(when);
    const double meanLongitude = std::fmod(280.46646 + t * (36000.76983 + t * 0.0003032), 360.0);
    const double meanAnomaly = 357.52911 + t * (35999.05029 - t * 0.0001537);
    const double eccentricity = 0.016708634 - t * (0.000042037 + t * 0.0000001267);
    const double centre = degreesSin(meanAnomaly) * (1.914602 - t * (0.004817 + t * 0.000014))
        + degreesSin(2 * meanAnomaly) * (0.019993 - t * 0.000101)
        + degreesSin(3 * meanAnomaly) * 0.000289;
    const double node = 125.04 - 1934.136 * t;
    const double apparentLongitude = meanLongitude + centre - 0.00569 - 0.00478 * degreesSin(node);
    const double meanObliquity
        = 23.0 + (26.0 + (21.448 - t * (46.815 + t * (0.00059 - t * 0.001813))) / 60.0) / 60.0;
    const double obliquity = meanObliquity + 0.00256 * degreesCos(node);
    const double declination
        = qRadiansToDegrees(std::asin(degreesSin(obliquity) * degreesSin(apparentLongitude)));

    // The equation of time, in minutes: how far the sundial runs ahead of the mean clock.
    const double y = std::pow(std::tan(qDegreesToRadians(obliquity / 2)), 2);
    const double equationOfTime = 4.0
        * qRadiansToDegrees(y * degreesSin(2 * meanLongitude)
                            - 2 * eccentricity * degreesSin(meanAnomaly)
                            + 4 * eccentricity * y * degreesSin(meanAnomaly)
                                * degreesCos(2 * meanLongitude)
                            - 0.5 * y * y * degreesSin(4 * meanLongitude)
                            - 1.25 * eccentricity * eccentricity * degreesSin(2 * meanAnomaly));

    const QDateTime utc = when.toUTC();
    const double minutesOfDay = utc.time().msecsSinceStartOfDay() / 60'000.0;
    const double solarMinutes = minutesOfDay + equationOfTime + 4.0 * at.longitude;
    const double hourAngle = solarMinutes / 4.0 - 180.0;
    const double cosZenith = degreesSin(at.latitude) * degreesSin(declination)
        + degreesCos(at.latitude) * degreesCos(declination) * degreesCos(hourAngle);
    return 90.0 - qRadiansToDegrees(std::acos(std::clamp(cosZenith, -1.0, 1.0)));
}

bool SolarPosition::isCivilNight(const QDateTime &when, Coordinate at)
{
    return elevation(when, at) < civilTwilightElevation;
}

QDateTime SolarPosition::nextCivilChange(const QDateTime &from, Coordinate at)
{
    // The sun's elevation turns at most twice a day, so ten-minute steps cannot step over a whole
    // dusk and dawn; the crossing found is then halved down to the second.
    constexpr qint64 stepSecs = 600;
    constexpr qint64 horizonSecs = 2 * 86'400;
    const bool night = isCivilNight(from, at);
    for (qint64 ahead = stepSecs; ahead <= horizonSecs; ahead += stepSecs) {
        if (isCivilNight(from.addSecs(ahead), at) == night)
            continue;
        qint64 before = ahead - stepSecs;
        qint64 after = ahead;
        while (after - before > 1) {
            const qint64 middle = (before + after) / 2;
            (isCivilNight(from.addSecs(middle), at) == night ? before : after) = middle;
        }
        return from.addSecs(after);
    }
    return {};
}
