#pragma once

#include "ExactAngle.h"

#include <optional>
#include <string>
#include <string_view>

// ADIF's location format for LAT and LON: "XDDD MM.MMM", a hemisphere letter, three digits of
// degrees, a space and minutes with three decimals ("N051 28.674", "W000 05.988").
class AdifLocation
{
public:
    enum class Axis
    {
        Latitude,
        Longitude
    };

    static constexpr std::size_t length = 11;

    // Degrees, south and west negative; on failure *why completes "LAT \"...\" ".
    static std::optional<double> parse(std::string_view text, Axis axis, std::string *why);
    // The exact value of text that parse() accepts.
    static ExactAngle exact(std::string_view text);
    // Rounded to the nearest thousandth of a minute.
    static std::string format(double degrees, Axis axis);
};
