#pragma once

#include <optional>
#include <string>
#include <string_view>

// A latitude or longitude exactly as its decimal text gives it, with no rounding to binary: a
// whole number of degrees, minutes or seconds and the digits of its fraction. Where a point lies
// on a grid line, the arithmetic must not move it: "51" is the first degree of JO01, never the
// last sliver of JO00.
class ExactAngle
{
public:
    // A signed decimal number of degrees: "51", "-74.0000", ".5", "5e-1".
    static std::optional<ExactAngle> fromDecimal(std::string_view text);
    // Unsigned parts of an angle: degrees, then minutes, then seconds, where given; only the last
    // part given may have a fraction ("050", "28.750" is ADIF's N050 28.750).
    static std::optional<ExactAngle> fromParts(std::string_view degrees, std::string_view minutes,
                                               std::string_view seconds, bool negative);

    // floor((angle + offset) × perDegree), computed exactly.
    long long floorUnits(int perDegree, int offset) const;

private:
    bool m_negative = false;
    // Whole degrees, minutes or seconds (m_perDegree of them to a degree), capped far beyond
    // any angle.
    long long m_whole = 0;
    // The digits after the point, without trailing zeros.
    std::string m_fraction;
    int m_perDegree = 1;
};
