#pragma once

#include <QStringView>

#include <optional>

// Locator precision. The declaration order is the order used for comparisons.
enum class VeltorFormat {
    TwoCharacters,
    FourCharacters,
    SixCharacters,
    EightCharacters,
};

QStringView rawValue(VeltorFormat format);
std::optional<VeltorFormat> veltorFormatFromRawValue(QStringView raw);

// Number of locator characters that a format produces.
constexpr int characterCount(VeltorFormat format)
{
    return 2 * (static_cast<int>(format) + 1);
}
