#include "ReadoutFit.h"

#include <QFontMetricsF>

#include <algorithm>

namespace {

qreal widestAt(const QStringList &texts, QFont font, qreal pixelSize)
{
    font.setPixelSize(qMax(1, qFloor(pixelSize)));
    const QFontMetricsF metrics(font);
    qreal widest = 0.0;
    for (const QString &text : texts)
        widest = std::max(widest, metrics.horizontalAdvance(text));
    return widest + ReadoutFit::padding;
}

} // namespace

ReadoutFit ReadoutFit::of(const QStringList &texts, const QFont &font, qreal width, qreal spacing,
                          qreal captionWidth)
{
    ReadoutFit fit;
    const qreal natural = font.pixelSize() > 0 ? font.pixelSize() : font.pointSizeF();
    fit.pixelSize = natural;
    if (texts.isEmpty() || width <= 0.0)
        return fit;
    const qreal share = (width - spacing * (texts.size() - 1)) / texts.size();
    fit.stacked = texts.size() > 1 && widestAt(texts, font, natural) > share;
    const qreal room =
        fit.stacked || texts.size() == 1 ? width - (captionWidth > 0 ? captionWidth + spacing : 0)
                                         : share;
    // Whole pixels, largest first: fonts do not scale their advances exactly.
    for (qreal size = qFloor(natural); size >= minimumPixelSize; --size) {
        fit.pixelSize = size;
        if (widestAt(texts, font, size) <= room)
            return fit;
    }
    fit.pixelSize = minimumPixelSize;
    fit.wraps = true;
    return fit;
}
