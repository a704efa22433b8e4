#pragma once

#include <QLocale>
#include <QObject>
#include <QStringView>

#include <optional>

namespace DistanceFormats {
Q_NAMESPACE

// Units of the accuracy read-out.
enum class DistanceFormat
{
    Metric,
    Imperial,
};
Q_ENUM_NS(DistanceFormat)

} // namespace DistanceFormats

using DistanceFormat = DistanceFormats::DistanceFormat;

QStringView rawValue(DistanceFormat format);
std::optional<DistanceFormat> distanceFormatFromRawValue(QStringView raw);

// The units a locale prefers. Imperial wins every doubt: only a definite "uses metric" answer
// gives Metric.
DistanceFormat localeDefault(std::optional<bool> localeUsesMetricSystem);
DistanceFormat localeDefault(const QLocale &locale = QLocale());
