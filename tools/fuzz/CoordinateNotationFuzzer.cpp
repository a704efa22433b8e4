// The degree notations: arbitrary text into the parsers, which must never crash, and a round trip
// for a double taken from the first 8 input bytes. A finite value within ±180, printed in each
// notation with its hemisphere designator and read back, must come back within the notation's
// resolution.

#include "Coordinate.h"
#include "CoordinateFormat.h"
#include "CoordinateFormatter.h"

#include <QString>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

namespace {

const char *name(CoordinateFormat format)
{
    switch (format) {
    case CoordinateFormat::DegreesMinutesSeconds:
        return "dms";
    case CoordinateFormat::DegreesDecimalMinutes:
        return "ddm";
    case CoordinateFormat::DecimalDegrees:
        return "dd";
    }
    return "?";
}

[[noreturn]] void fail(const char *what, CoordinateFormat format, double value,
                       const QString &text, double parsed)
{
    std::fprintf(stderr,
                 "fuzz-coordinate-notation: %s\n  notation %s, value %.17g (%a)\n"
                 "  text \"%s\"\n  read back %.17g, off by %.17g, resolution %.17g\n",
                 what, name(format), value, value, text.toUtf8().constData(), parsed,
                 std::fabs(parsed - value), resolution(format));
    std::abort();
}

// The printed text is within the resolution of the value (truncated seconds come as close to a
// whole second as the value's digits allow), but reading it back adds up rounded doubles
// (d + m / 60 + s / 3600), so allow a few units in the last place of the magnitude on top.
double tolerance(CoordinateFormat format, double value)
{
    return resolution(format) + 8.0 * std::numeric_limits<double>::epsilon() *
                                    std::max(1.0, std::fabs(value));
}

void checkClose(const char *what, CoordinateFormat format, double value, const QString &text,
                double parsed)
{
    // Written so that a NaN read-back fails too.
    if (!(std::fabs(parsed - value) <= tolerance(format, value)))
        fail(what, format, value, text, parsed);
}

void roundTrip(double value)
{
    constexpr CoordinateFormat formats[] = {CoordinateFormat::DegreesMinutesSeconds,
                                            CoordinateFormat::DegreesDecimalMinutes,
                                            CoordinateFormat::DecimalDegrees};
    for (const CoordinateFormat format : formats) {
        CoordinateFormatter formatter;
        formatter.setFormat(format);

        // As a latitude ("N" or "S" by sign) and as a longitude ("E" or "W" by sign).
        const QString latitudeText =
            formatter.stringFromDegrees(value, CoordinateFormatter::latitudeHemisphere(value));
        checkClose("latitude round trip", format, value, latitudeText,
                   CoordinateFormatter::degreesFromString(latitudeText));
        const QString longitudeText =
            formatter.stringFromDegrees(value, CoordinateFormatter::longitudeHemisphere(value));
        checkClose("longitude round trip", format, value, longitudeText,
                   CoordinateFormatter::degreesFromString(longitudeText));

        // The UTF-8 engine with the designator chosen here from the sign, as veltor-locate does.
        std::string utf8;
        CoordinateFormatter::appendDegrees(utf8, format, CoordinateFormatter::Form::Display, value,
                                           value < 0 ? "S" : "N");
        const QString utf8Text = QString::fromStdString(utf8);
        checkClose("appendDegrees round trip", format, value, utf8Text,
                   CoordinateFormatter::degreesFromString(utf8Text));

        // A whole coordinate: half the value as latitude (exact, and within ±90), the value as
        // longitude.
        const Coordinate coordinate{value / 2.0, value};
        const QString coordinateText = formatter.stringFromCoordinate(coordinate);
        const Coordinate parsed = CoordinateFormatter::coordinateFromString(coordinateText);
        checkClose("coordinate round trip (latitude)", format, coordinate.latitude, coordinateText,
                   parsed.latitude);
        checkClose("coordinate round trip (longitude)", format, coordinate.longitude,
                   coordinateText, parsed.longitude);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // Any text: only crashes (and sanitizer reports) count here.
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    volatile double sink = CoordinateFormatter::degreesFromString(text);
    const Coordinate coordinate = CoordinateFormatter::coordinateFromString(text);
    sink = coordinate.latitude;
    sink = coordinate.longitude;
    (void)sink;

    if (size >= sizeof(double)) {
        double value;
        std::memcpy(&value, data, sizeof value);
        if (std::isfinite(value) && std::fabs(value) <= 180.0)
            roundTrip(value);
    }
    return 0;
}
