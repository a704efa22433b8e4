#include "DistanceFormat.h"

#include "RawValueTable.h"

namespace {
constexpr RawValueTable<DistanceFormat, 2> table({
    u"DistanceFormatMetric",
    u"DistanceFormatImperial",
});
} // namespace

QStringView rawValue(DistanceFormat format)
{
    return table.rawValue(format);
}

std::optional<DistanceFormat> distanceFormatFromRawValue(QStringView raw)
{
    return table.fromRawValue(raw);
}

DistanceFormat localeDefault(std::optional<bool> localeUsesMetricSystem)
{
    return localeUsesMetricSystem.value_or(false) ? DistanceFormat::Metric
                                                  : DistanceFormat::Imperial;
}

DistanceFormat localeDefault(const QLocale &locale)
{
    return localeDefault(locale.measurementSystem() == QLocale::MetricSystem);
}
