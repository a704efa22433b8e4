#include "GlyphImageProvider.h"

#include <QColor>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>

#include <utility>

namespace {

constexpr QSizeF glyphBox{34.0, 24.0};

} // namespace

GlyphImageProvider::GlyphImageProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QPainterPath GlyphImageProvider::glyphPath(QStringView name)
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
    } else if (name == u"ToolbarIconTrack" || name == u"ToolbarIconTracking") {
        // The location arrow: hollow while not tracking, solid while tracking.
        QPainterPath arrow;
        arrow.moveTo(7, 11.5);
        arrow.lineTo(27, 3);
        arrow.lineTo(18.5, 22);
        arrow.lineTo(16, 14);
        arrow.closeSubpath();
        if (name == u"ToolbarIconTracking")
            return arrow;
        QPainterPathStroker stroker;
        stroker.setWidth(2.0);
        stroker.setJoinStyle(Qt::RoundJoin);
        path = stroker.createStroke(arrow);
    } else if (name == u"share") {
        // An arrow rising out of an open box.
        QPainterPathStroker stroker;
        stroker.setWidth(2.2);
        stroker.setCapStyle(Qt::RoundCap);
        stroker.setJoinStyle(Qt::RoundJoin);
        QPainterPath lines;
        lines.moveTo(13, 9);
        lines.lineTo(10, 9);
        lines.lineTo(10, 23);
        lines.lineTo(24, 23);
        lines.lineTo(24, 9);
        lines.lineTo(21, 9);
        lines.moveTo(17, 16);
        lines.lineTo(17, 2);
        lines.moveTo(13, 6);
        lines.lineTo(17, 2);
        lines.lineTo(21, 6);
        path = stroker.createStroke(lines);
    } else if (name == u"bearing") {
        // An arrow pointing up, turned to a bearing by whoever shows it: round its centre.
        path.moveTo(17, 1);
        path.lineTo(25, 20);
        path.lineTo(17, 15.5);
        path.lineTo(9, 20);
        path.closeSubpath();
    } else if (name == u"plus" || name == u"minus") {
        // Bars of a stepper or a zoom button, heavier than a font's plus and minus.
        path.addRect(QRectF(8, 10.5, 18, 3));
        if (name == u"plus")
            path.addRect(QRectF(15.5, 3, 3, 18));
        path.setFillRule(Qt::WindingFill);
    } else if (name == u"unfold" || name == u"fold") {
        // A chevron pointing down (to unfold) or up.
        QPainterPathStroker stroker;
        stroker.setWidth(2.6);
        stroker.setCapStyle(Qt::RoundCap);
        stroker.setJoinStyle(Qt::RoundJoin);
        QPainterPath chevron;
        const double tip = name == u"unfold" ? 16 : 8;
        const double ends = name == u"unfold" ? 8 : 16;
        chevron.moveTo(10, ends);
        chevron.lineTo(17, tip);
        chevron.lineTo(24, ends);
        path = stroker.createStroke(chevron);
    } else if (name == u"close") {
        // A cross that dismisses or cancels.
        QPainterPathStroker stroker;
        stroker.setWidth(2.6);
        stroker.setCapStyle(Qt::RoundCap);
        QPainterPath cross;
        cross.moveTo(11, 6);
        cross.lineTo(23, 18);
        cross.moveTo(23, 6);
        cross.lineTo(11, 18);
        path = stroker.createStroke(cross);
    } else if (name == u"settings") {
        // A gear: a ring with eight teeth.
        const QPointF centre(17, 12);
        QPainterPath gear;
        gear.addEllipse(centre, 7.5, 7.5);
        for (int i = 0; i < 8; ++i) {
            QTransform turn;
            turn.translate(centre.x(), centre.y());
            turn.rotate(45.0 * i);
            QPainterPath tooth;
            tooth.addRect(QRectF(-2.0, -11.0, 4.0, 5.0));
            gear = gear.united(turn.map(tooth));
        }
        QPainterPath hole;
        hole.addEllipse(centre, 3.2, 3.2);
        path = gear.subtracted(hole);
    } else {
        path = lineGlyph(name);
    }
    return path;
}

// Glyphs drawn as strokes of one width, as a menu's icons are.
QPainterPath GlyphImageProvider::lineGlyph(QStringView name)
{
    QPainterPath lines;
    if (name == u"menu") {
        // Three bars.
        for (const double y : {6.0, 12.0, 18.0}) {
            lines.moveTo(9, y);
            lines.lineTo(25, y);
        }
    } else if (name == u"copy") {
        // Two sheets, one over the other.
        lines.addRoundedRect(QRectF(13, 7, 12, 15), 2, 2);
        lines.moveTo(10, 17);
        lines.lineTo(9, 17);
        lines.lineTo(9, 2);
        lines.lineTo(20, 2);
        lines.lineTo(20, 4);
    } else if (name == u"map") {
        // A folded map of three panels.
        lines.moveTo(6, 5);
        lines.lineTo(13, 2);
        lines.lineTo(21, 5);
        lines.lineTo(28, 2);
        lines.lineTo(28, 19);
        lines.lineTo(21, 22);
        lines.lineTo(13, 19);
        lines.lineTo(6, 22);
        lines.closeSubpath();
        lines.moveTo(13, 2);
        lines.lineTo(13, 19);
        lines.moveTo(21, 5);
        lines.lineTo(21, 22);
    } else if (name == u"target") {
        // Cross hairs on a ring.
        lines.addEllipse(QPointF(17, 12), 8, 8);
        lines.addEllipse(QPointF(17, 12), 2.5, 2.5);
        for (const auto &[from, to] : {std::pair(QPointF(17, 1), QPointF(17, 6)),
                                       std::pair(QPointF(17, 18), QPointF(17, 23)),
                                       std::pair(QPointF(6, 12), QPointF(11, 12)),
                                       std::pair(QPointF(23, 12), QPointF(28, 12))}) {
            lines.moveTo(from);
            lines.lineTo(to);
        }
    } else if (name == u"keypad") {
        // Keys in three rows of three.
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 3; ++column)
                lines.addRoundedRect(QRectF(8.5 + 6.5 * column, 2.5 + 6.5 * row, 4, 4), 1, 1);
        }
    } else if (name == u"proof") {
        // A sheet with a tick: a picture and a record that say where the point was.
        lines.moveTo(20, 2);
        lines.lineTo(10, 2);
        lines.lineTo(10, 22);
        lines.lineTo(25, 22);
        lines.lineTo(25, 7);
        lines.lineTo(20, 2);
        lines.lineTo(20, 7);
        lines.lineTo(25, 7);
        lines.moveTo(13.5, 14);
        lines.lineTo(16.5, 17);
        lines.lineTo(21.5, 11);
    } else if (name == u"download") {
        // An arrow down into a tray: kept on the device.
        lines.moveTo(17, 2);
        lines.lineTo(17, 15);
        lines.moveTo(12, 10);
        lines.lineTo(17, 15);
        lines.lineTo(22, 10);
        lines.moveTo(8, 15);
        lines.lineTo(8, 22);
        lines.lineTo(26, 22);
        lines.lineTo(26, 15);
    } else if (name == u"layers") {
        // Two map sheets, stacked.
        lines.moveTo(17, 3);
        lines.lineTo(28, 9);
        lines.lineTo(17, 15);
        lines.lineTo(6, 9);
        lines.closeSubpath();
        lines.moveTo(6, 14);
        lines.lineTo(17, 20);
        lines.lineTo(28, 14);
    } else if (name == u"station") {
        // A mast with waves either side.
        lines.moveTo(17, 9);
        lines.lineTo(12, 23);
        lines.moveTo(17, 9);
        lines.lineTo(22, 23);
        lines.moveTo(14, 17);
        lines.lineTo(20, 17);
        lines.addEllipse(QPointF(17, 8), 1.5, 1.5);
        lines.moveTo(11, 3);
        lines.quadTo(7, 8, 11, 13);
        lines.moveTo(23, 3);
        lines.quadTo(27, 8, 23, 13);
    } else {
        return {};
    }
    QPainterPathStroker stroker;
    stroker.setWidth(2.0);
    stroker.setCapStyle(Qt::RoundCap);
    stroker.setJoinStyle(Qt::RoundJoin);
    return stroker.createStroke(lines);
}

QImage GlyphImageProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
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
