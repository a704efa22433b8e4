#pragma once

#include "Coordinate.h"
#include "CoordinateFormat.h"

#include <QString>
#include <QVariant>

#include <optional>
#include <string>
#include <string_view>

// Prints latitudes and longitudes in one of three degree notations and reads such text back.
// The output never depends on the locale: the decimal separator is always ".".
class CoordinateFormatter
{
public:
    enum class Form { Display, Spoken };

    CoordinateFormat format() const { return m_format; }
    void setFormat(CoordinateFormat format) { m_format = format; }

    // One value; the text is the magnitude followed by the given hemisphere designator.
    QString stringFromDegrees(double degrees, const QString &hemisphere) const;
    QString latitudeStringFromCoordinate(Coordinate coordinate) const;
    QString longitudeStringFromCoordinate(Coordinate coordinate) const;
    // "<latitude>, <longitude>"
    QString stringFromCoordinate(Coordinate coordinate) const;

    // Sums the "°", "′" and "″" pieces; a trailing "S" or "W" piece negates what precedes it.
    static double degreesFromString(QStringView string);
    static Coordinate coordinateFromString(QStringView string);

    std::optional<QString> stringForObjectValue(const QVariant &object) const;
    bool getObjectValue(QVariant *object, const QString &string) const;

    // Designators by sign: zero, negative zero and NaN count as north and east.
    static QString latitudeHemisphere(double latitude);
    static QString longitudeHemisphere(double longitude);

    // Whether the notation can print the value; whole degrees beyond 2^64 cannot be.
    static bool canFormat(CoordinateFormat format, double degrees);

    // The engine behind every string above, writing UTF-8; appends to out.
    static void appendDegrees(std::string &out, CoordinateFormat format, Form form,
                              double degrees, std::string_view hemisphere);

private:
    CoordinateFormat m_format = CoordinateFormat::DegreesMinutesSeconds;
};
