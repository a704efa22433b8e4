#include "CoordinateFormat.h"

#include "CoordinateFormatter.h"
#include "RawValueTable.h"

namespace {
constexpr RawValueTable<CoordinateFormat, 3> table({
    u"CoordinateFormatDegreesMinutesSeconds",
    u"CoordinateFormatDegreesDecimalMinutes",
    u"CoordinateFormatDecimalDegrees",
});
} // namespace

QStringView rawValue(CoordinateFormat format)
{
    return table.rawValue(format);
}

std::optional<CoordinateFormat> coordinateFormatFromRawValue(QStringView raw)
{
    return table.fromRawValue(raw);
}

double resolution(CoordinateFormat format)
{
    switch (format) {
    case CoordinateFormat::DegreesMinutesSeconds:
        return 0.0002777777777777778;
    case CoordinateFormat::DegreesDecimalMinutes:
        return 1.6666666666666667e-06;
    case CoordinateFormat::DecimalDegrees:
        return 0.0001;
    }
    return 0.0001;
}

QString accessibilityStringFromDegrees(CoordinateFormat format, double degrees,
                                       const QString &hemisphere)
{
    std::string text;
    CoordinateFormatter::appendDegrees(text, format, CoordinateFormatter::Form::Spoken, degrees,
                                       hemisphere.toStdString());
    return QString::fromStdString(text);
}
