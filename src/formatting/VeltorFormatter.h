#pragma once

#include "Coordinate.h"
#include "VeltorFormat.h"

#include <QString>
#include <QVariant>

#include <optional>
#include <string_view>

// Turns coordinates into IARU grid locators of 2 to 8 characters and locators (partial, odd,
// longer, any case) back into the centre of the cell they name. Neither direction fails.
class VeltorFormatter
{
public:
    static constexpr int maximumEncodedLength = 8;

    VeltorFormat format() const { return m_format; }
    void setFormat(VeltorFormat format) { m_format = format; }

    QString stringFromCoordinate(Coordinate coordinate) const;
    Coordinate coordinateFromString(const QString &string) const;

    // A QVariant holding a Coordinate is encoded; anything else gives no string.
    std::optional<QString> stringForObjectValue(const QVariant &object) const;
    // Decodes into *object when given; always succeeds.
    bool getObjectValue(QVariant *object, const QString &string) const;

    // Allocation-free forms for hot paths (tile drawing, batch conversion).
    // Writes characterCount(format) characters to out, which must hold maximumEncodedLength.
    static int encode(Coordinate coordinate, VeltorFormat format, char *out);
    // Decodes UTF-8 text; pure ASCII takes a fast path.
    static Coordinate decode(std::string_view utf8);

private:
    static Coordinate decodeAscii(std::string_view text);

    VeltorFormat m_format = VeltorFormat::EightCharacters;
};

// "J N 5 8 ": every character followed by a blank, so a screen reader spells the locator.
QString spelledOut(const QString &locator);
// The locator of the point at that precision, spelled as above.
QString spelledVeltor(VeltorFormat format, Coordinate coordinate);
