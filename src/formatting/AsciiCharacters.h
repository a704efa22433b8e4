#pragma once

// Character classes of machine text (NMEA sentences, ADIF fields, numbers typed in C locale),
// which the locale must never widen to other scripts' digits or spaces.
namespace AsciiCharacters {

constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

// What C's isspace() takes in the C locale.
constexpr bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

} // namespace AsciiCharacters
