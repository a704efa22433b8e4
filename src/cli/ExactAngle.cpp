#include "ExactAngle.h"

#include "AsciiCharacters.h"

#include <algorithm>

namespace {

using AsciiCharacters::isDigit;

// Beyond every angle in any unit, yet far from overflowing when multiplied up.
constexpr long long wholeCap = 1'000'000'000LL;

bool allDigits(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), isDigit);
}

long long wholeOf(std::string_view digits)
{
    long long value = 0;
    for (const char c : digits) {
        value = value * 10 + (c - '0');
        if (value > wholeCap)
            return wholeCap;
    }
    return value;
}

std::string withoutTrailingZeros(std::string digits)
{
    while (!digits.empty() && digits.back() == '0')
        digits.pop_back();
    return digits;
}

// floor(0.digits × factor), from the last digit up, as long multiplication does it.
long long floorTimes(const std::string &digits, int factor)
{
    long long carry = 0;
    for (auto it = digits.rbegin(); it != digits.rend(); ++it)
        carry = ((*it - '0') * static_cast<long long>(factor) + carry) / 10;
    return carry;
}

// 1 − 0.digits, for a fraction without trailing zeros: the nines' complement plus one in the
// last place, which never carries since that digit is not 0.
std::string complement(const std::string &digits)
{
    std::string result(digits.size(), '0');
    for (std::size_t i = 0; i < digits.size(); ++i)
        result[i] = char('0' + (i + 1 == digits.size() ? 10 : 9) - (digits[i] - '0'));
    return withoutTrailingZeros(result);
}

long long floorDivide(long long numerator, long long denominator)
{
    const long long quotient = numerator / denominator;
    return (numerator % denominator != 0 && numerator < 0) ? quotient - 1 : quotient;
}

} // namespace

std::optional<ExactAngle> ExactAngle::fromDecimal(std::string_view text)
{
    ExactAngle angle;
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        angle.m_negative = text.front() == '-';
        text.remove_prefix(1);
    }
    int exponent = 0;
    if (const std::size_t e = text.find_first_of("eE"); e != std::string_view::npos) {
        std::string_view power = text.substr(e + 1);
        text = text.substr(0, e);
        bool negativePower = false;
        if (!power.empty() && (power.front() == '-' || power.front() == '+')) {
            negativePower = power.front() == '-';
            power.remove_prefix(1);
        }
        if (power.empty() || power.size() > 4 || !allDigits(power))
            return std::nullopt;
        exponent = int(wholeOf(power)) * (negativePower ? -1 : 1);
    }
    const std::size_t point = text.find('.');
    std::string whole(text.substr(0, point));
    std::string fraction(point == std::string_view::npos ? std::string_view()
                                                         : text.substr(point + 1));
    if ((whole.empty() && fraction.empty()) || !allDigits(whole) || !allDigits(fraction))
        return std::nullopt;
    // Move the point as the exponent says.
    for (; exponent > 0; --exponent) {
        whole.push_back(fraction.empty() ? '0' : fraction.front());
        if (!fraction.empty())
            fraction.erase(0, 1);
        if (whole.size() > 20)
            break;
    }
    for (; exponent < 0; ++exponent) {
        fraction.insert(0, 1, whole.empty() ? '0' : whole.back());
        if (!whole.empty())
            whole.pop_back();
    }
    angle.m_whole = wholeOf(whole);
    angle.m_fraction = withoutTrailingZeros(std::move(fraction));
    return angle;
}

std::optional<ExactAngle> ExactAngle::fromParts(std::string_view degrees, std::string_view minutes,
                                                std::string_view seconds, bool negative)
{
    const std::string_view parts[] = {degrees, minutes, seconds};
    ExactAngle angle;
    angle.m_negative = negative;
    for (int i = 0; i < 3; ++i) {
        std::string_view part = parts[i];
        if (part.empty())
            break;
        if (!angle.m_fraction.empty())
            return std::nullopt;
        const std::size_t point = part.find('.');
        const std::string_view whole = part.substr(0, point);
        const std::string_view fraction =
            point == std::string_view::npos ? std::string_view() : part.substr(point + 1);
        if ((whole.empty() && fraction.empty()) || !allDigits(whole) || !allDigits(fraction))
            return std::nullopt;
        if (i > 0) {
            angle.m_whole = std::min(angle.m_whole * 60, wholeCap);
            angle.m_perDegree *= 60;
        }
        angle.m_whole = std::min(angle.m_whole + wholeOf(whole), wholeCap);
        angle.m_fraction = withoutTrailingZeros(std::string(fraction));
    }
    return angle;
}

long long ExactAngle::floorUnits(int perDegree, int offset) const
{
    const long long shift = static_cast<long long>(offset) * m_perDegree;
    long long whole = 0;
    std::string fraction;
    if (!m_negative) {
        whole = shift + m_whole;
        fraction = m_fraction;
    } else if (m_fraction.empty()) {
        whole = shift - m_whole;
    } else {
        // offset − (w + f) = (offset − w − 1) + (1 − f)
        whole = shift - m_whole - 1;
        fraction = complement(m_fraction);
    }
    // The fraction adds less than one to an integer numerator, so it never reaches the next
    // multiple of the unit: only its own whole part counts.
    return floorDivide(whole * perDegree + floorTimes(fraction, perDegree), m_perDegree);
}
