#include "ContestDistance.h"

#include "VeltorFormatter.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>

namespace {

Coordinate sixCharacterCentre(Coordinate c)
{
    char locator[VeltorFormatter::maximumEncodedLength];
    const int length = VeltorFormatter::encode(c, VeltorFormat::SixCharacters, locator);
    return VeltorFormatter::decode(std::string_view(locator, std::size_t(length)));
}

} // namespace

// IARU Region 1 VHF Managers Handbook (version 5.42, Vienna 2010), section 5.3.9 "Scoring": "the
// calculated distance in kilometres will be truncated to an integer value and 1 km will be added.
// The centre of each locator square is used for distance calculations. [...] a factor of 111.2
// should be used when calculating distances with the aid of the spherical geometry equation
// (Noordwijkerhout, 1987)."
int contestKilometres(Coordinate a, Coordinate b)
{
    constexpr double radians = std::numbers::pi / 180.0;
    const Coordinate p = sixCharacterCentre(a);
    const Coordinate q = sixCharacterCentre(b);
    const double cosine = std::sin(p.latitude * radians) * std::sin(q.latitude * radians) +
                          std::cos(p.latitude * radians) * std::cos(q.latitude * radians) *
                              std::cos((q.longitude - p.longitude) * radians);
    // Rounding can carry the cosine of a zero arc just past 1.
    const double arcDegrees = std::acos(std::clamp(cosine, -1.0, 1.0)) / radians;
    return int(std::trunc(arcDegrees * 111.2)) + 1;
}
