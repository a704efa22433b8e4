#include "AdifLocation.h"

#include "AsciiCharacters.h"

#include <cmath>
#include <cstdio>

namespace {

using AsciiCharacters::isDigit;

int digits(std::string_view text)
{
    int value = 0;
    for (const char c : text)
        value = value * 10 + (c - '0');
    return value;
}

char upper(char c)
{
    return (c >= 'a' && c <= 'z') ? char(c - 'a' + 'A') : c;
}

} // namespace

std::optional<double> AdifLocation::parse(std::string_view text, Axis axis, std::string *why)
{
    const bool latitude = axis == Axis::Latitude;
    const char positive = latitude ? 'N' : 'E';
    const char negative = latitude ? 'S' : 'W';
    const char hemisphere = text.empty() ? '\0' : upper(text[0]);
    bool wellFormed = text.size() == length && (hemisphere == positive || hemisphere == negative) &&
                      text[4] == ' ' && text[7] == '.';
    for (const std::size_t i : {1, 2, 3, 5, 6, 8, 9, 10})
        wellFormed = wellFormed && isDigit(text[i]);
    if (!wellFormed) {
        *why = "is not ADIF's location format XDDD MM.MMM";
        return std::nullopt;
    }
    const int degrees = digits(text.substr(1, 3));
    const int thousandths = digits(text.substr(5, 2)) * 1000 + digits(text.substr(8, 3));
    const int limit = latitude ? 90 : 180;
    if (thousandths >= 60000) {
        *why = "has 60 or more minutes";
        return std::nullopt;
    }
    if (degrees > limit || (degrees == limit && thousandths > 0)) {
        *why = "is beyond " + std::to_string(limit) + " degrees";
        return std::nullopt;
    }
    const double value = degrees + thousandths / 60000.0;
    return hemisphere == negative ? -value : value;
}

ExactAngle AdifLocation::exact(std::string_view text)
{
    const char hemisphere = upper(text[0]);
    return *ExactAngle::fromParts(text.substr(1, 3), text.substr(5), {},
                                  hemisphere == 'S' || hemisphere == 'W');
}

std::string AdifLocation::format(double degrees, Axis axis)
{
    const bool latitude = axis == Axis::Latitude;
    const long long thousandths = std::llround(std::fabs(degrees) * 60000.0);
    // A point that rounds to zero takes the positive letter, never "S000 00.000".
    const char hemisphere =
        degrees < 0 && thousandths > 0 ? (latitude ? 'S' : 'W') : (latitude ? 'N' : 'E');
    char text[32];
    std::snprintf(text, sizeof text, "%c%03lld %02lld.%03lld", hemisphere, thousandths / 60000,
                  thousandths % 60000 / 1000, thousandths % 1000);
    return text;
}
