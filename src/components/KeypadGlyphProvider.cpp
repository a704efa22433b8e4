#include "KeypadGlyphProvider.h"

#include <QColor>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr QSizeF glyphBox{34.0, 24.0};

} // namespace

KeypadGlyphProvider::KeypadGlyphProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QPainterPath KeypadGlyphProvider::glyphPath(QStringView name)
{
    QPainterPath path;
    if (name == u"delete") {
        // A key cap pointing left with a cross cut out of it.
        path.moveTo(10, 1);
        path.lineTo(31, 1);
        path.quadTo(33, 1, 33, 3);
        path.lineTo(33, 21);
        path.quadTo(33, 23, 31, 23);
        path.lineTo(10, 23);
        path.lineTo(1, 12);
        path.closeSubpath();
        QPainterPath cross;
        const auto bar = [&cross](QPointF from, QPointF to) {
            QPainterPathStroker stroker;
            stroker.setWidth(2.2);
            stroker.setCapStyle(Qt::RoundCap);
            QPainterPath line(from);
            line.lineTo(to);
            cross = cross.united(stroker.createStroke(line));
        };
        bar({15, 7}, {25, 17});
        bar({25, 7}, {15, 17});
        path = path.subtracted(cross);
    }
    return path;
}

QImage KeypadGlyphProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const qsizetype slash = id.indexOf(u'/');
    const QStringView name = QStringView(id).left(slash < 0 ? id.size() : slash);
    // The colour comes as AARRGGBB: a "#" would end the URL's path.
    const QColor colour(slash < 0 ? QString() : u'#' + id.mid(slash + 1));
    const QSize pixels = requestedSize.isValid() && !requestedSize.isEmpty()
                             ? requestedSize
                             : glyphBox.toSize();
    if (size)
        *size = pixels;
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const QPainterPath path = glyphPath(name);
    if (path.isEmpty() || !colour.isValid())
        return image;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixels.width() / glyphBox.width(), pixels.height() / glyphBox.height());
    painter.fillPath(path, colour);
    return image;
}
