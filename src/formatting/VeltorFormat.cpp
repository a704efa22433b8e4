#include "VeltorFormat.h"

#include "RawValueTable.h"

namespace {
constexpr RawValueTable<VeltorFormat, 4> table({
    u"VeltorFormatTwoCharacters",
    u"VeltorFormatFourCharacters",
    u"VeltorFormatSixCharacters",
    u"VeltorFormatEightCharacters",
});
} // namespace

QStringView rawValue(VeltorFormat format)
{
    return table.rawValue(format);
}

std::optional<VeltorFormat> veltorFormatFromRawValue(QStringView raw)
{
    return table.fromRawValue(raw);
}
