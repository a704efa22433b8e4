#include "GpsdReport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace {

std::optional<double> finiteNumber(const QJsonObject &object, QLatin1StringView key)
{
    const QJsonValue value = object.value(key);
    if (!value.isDouble() || !std::isfinite(value.toDouble()))
        return std::nullopt;
    return value.toDouble();
}

GpsdReport fixReport(const QJsonObject &tpv)
{
    GpsdReport report;
    report.kind = GpsdReport::Kind::Fix;
    switch (tpv.value(QLatin1StringView("mode")).toInt(0)) {
    case 1:
        report.fixMode = ReceiverStatus::NoFix;
        break;
    case 2:
        report.fixMode = ReceiverStatus::TwoD;
        break;
    case 3:
        report.fixMode = ReceiverStatus::ThreeD;
        break;
    default:
        break;
    }
    const auto lat = finiteNumber(tpv, QLatin1StringView("lat"));
    const auto lon = finiteNumber(tpv, QLatin1StringView("lon"));
    const bool hasFix =
        report.fixMode == ReceiverStatus::TwoD || report.fixMode == ReceiverStatus::ThreeD;
    if (hasFix && lat && lon && std::abs(*lat) <= 90.0 && std::abs(*lon) <= 180.0)
        report.coordinate = Coordinate{*lat, *lon};
    // eph is gpsd's horizontal error; older gpsd and some drivers give only the two axes.
    if (const auto eph = finiteNumber(tpv, QLatin1StringView("eph")); eph && *eph >= 0.0) {
        report.horizontalAccuracy = *eph;
    } else {
        const auto epx = finiteNumber(tpv, QLatin1StringView("epx"));
        const auto epy = finiteNumber(tpv, QLatin1StringView("epy"));
        if (epx && epy && *epx >= 0.0 && *epy >= 0.0)
            report.horizontalAccuracy = std::hypot(*epx, *epy);
    }
    return report;
}

GpsdReport satellitesReport(const QJsonObject &sky)
{
    GpsdReport report;
    // gpsd also sends SKY reports that carry only the DOPs; those say nothing of satellites.
    const auto used = finiteNumber(sky, QLatin1StringView("uSat"));
    const auto seen = finiteNumber(sky, QLatin1StringView("nSat"));
    const QJsonValue list = sky.value(QLatin1StringView("satellites"));
    if (used && seen) {
        report.satellitesUsed = int(*used);
        report.satellitesInView = int(*seen);
    } else if (list.isArray()) {
        const QJsonArray satellites = list.toArray();
        report.satellitesInView = int(satellites.size());
        report.satellitesUsed = 0;
        for (const QJsonValue &satellite : satellites)
            report.satellitesUsed += satellite.toObject().value(QLatin1StringView("used")).toBool();
    } else {
        return report;
    }
    if (report.satellitesUsed < 0 || report.satellitesInView < report.satellitesUsed)
        return {};
    report.kind = GpsdReport::Kind::Satellites;
    return report;
}

} // namespace

GpsdReport GpsdReport::parse(QByteArrayView line)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(line.toByteArray(), &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return {};
    const QJsonObject object = document.object();
    const QString kind = object.value(QLatin1StringView("class")).toString();
    if (kind == QLatin1StringView("TPV"))
        return fixReport(object);
    if (kind == QLatin1StringView("SKY"))
        return satellitesReport(object);
    return {};
}
