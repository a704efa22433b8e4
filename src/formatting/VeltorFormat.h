#pragma once

#include <QObject>
#include <QStringView>

#include <optional>

namespace VeltorFormats {
Q_NAMESPACE

// Locator precision. The declaration order is the order used for comparisons.
enum class VeltorFormat
{
    TwoCharacters,
    FourCharacters,
    SixCharacters,
    EightCharacters,
};
Q_ENUM_NS(VeltorFormat)

} // namespace VeltorFormats

using VeltorFormat = VeltorFormats::VeltorFormat;

QStringView rawValue(VeltorFormat format);
std::optional<VeltorFormat> veltorFormatFromRawValue(QStringView raw);

// Number of locator characters that a format produces.
constexpr int characterCount(VeltorFormat format)
{
    return 2 * (static_cast<int>(format) + 1);
}
