#pragma once

#include "DistanceFormat.h"
#include "DistanceStyle.h"

#include <QLocale>
#include <QString>
#include <QVariant>

#include <cstdint>
#include <optional>
#include <variant>

// Which translated text a distance reads out with, and the one number that fills it.
struct DistanceReadout
{
    const char *key;
    std::variant<std::int64_t, double> argument;
};

// Reads out a distance in metres (the accuracy of a fix) in metric or imperial units, switching
// to the larger unit and from fractional to whole values at fixed thresholds. Texts come from the
// translation tables; numbers follow the locale given at construction.
class DistanceFormatter
{
public:
    explicit DistanceFormatter(const QLocale &locale = QLocale()) : m_locale(locale) {}

    DistanceFormat format() const { return m_format; }
    void setFormat(DistanceFormat format) { m_format = format; }
    // Stored for callers that set it; every read-out uses the long wording.
    DistanceStyle style() const { return m_style; }
    void setStyle(DistanceStyle style) { m_style = style; }

    QString metricStringForDistance(double meters) const;
    QString imperialStringForDistance(double meters) const;

    // A number is formatted in the current units; anything else gives no string.
    std::optional<QString> stringForObjectValue(const QVariant &object) const;

    // The choice of text and number, before translation.
    static DistanceReadout metricReadout(double meters);
    static DistanceReadout imperialReadout(double meters);

private:
    QString text(const DistanceReadout &readout) const;

    DistanceFormat m_format = DistanceFormat::Metric;
    DistanceStyle m_style = DistanceStyle::Long;
    QLocale m_locale;
};
