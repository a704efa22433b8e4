#include "ExactLocator.h"

#include <algorithm>

namespace {

// Extended squares: 30″ of longitude and 15″ of latitude, 43200 of each around the globe.
constexpr int extendedPerDegreeOfLongitude = 120;
constexpr int extendedPerDegreeOfLatitude = 240;
constexpr long long extendedSquares = 43200;

long long clamped(long long units)
{
    return std::clamp(units, 0LL, extendedSquares - 1);
}

} // namespace

int ExactLocator::encode(const ExactAngle &latitude, const ExactAngle &longitude,
                         VeltorFormat format, char *out)
{
    const long long x = clamped(longitude.floorUnits(extendedPerDegreeOfLongitude, 180));
    const long long y = clamped(latitude.floorUnits(extendedPerDegreeOfLatitude, 90));
    // Within a field, 10 squares of 24 subsquares of 10 extended squares, on both axes alike.
    const std::pair<char, char> pairs[] = {
        {char('A' + x / 2400), char('A' + y / 2400)},
        {char('0' + x % 2400 / 240), char('0' + y % 2400 / 240)},
        {char('a' + x % 240 / 10), char('a' + y % 240 / 10)},
        {char('0' + x % 10), char('0' + y % 10)},
    };
    const int count = characterCount(format) / 2;
    for (int i = 0; i < count; ++i) {
        out[2 * i] = pairs[i].first;
        out[2 * i + 1] = pairs[i].second;
    }
    return 2 * count;
}
