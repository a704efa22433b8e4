#pragma once

#include <QFont>
#include <QStringList>

// How read-outs fit a width: side by side when their texts fit so, else one above the other;
// then in the largest font size, down to a floor, at which the widest fits; below the floor the
// text wraps. A read-out is never cut short.
struct ReadoutFit
{
    // No read-out text is drawn smaller than this many pixels.
    static constexpr qreal minimumPixelSize = 15.0;
    // Room a read-out keeps around its text, as the underline button draws it.
    static constexpr qreal padding = 8.0;

    bool stacked = false;
    qreal pixelSize = 0.0;
    // The texts wrap even at the floor.
    bool wraps = false;

    // texts side by side, spacing apart, within width, in font at its own size or smaller;
    // stacked, each has the width less its caption's (captionWidth and spacing) to itself.
    static ReadoutFit of(const QStringList &texts, const QFont &font, qreal width, qreal spacing,
                         qreal captionWidth = 0.0);
};
