#include "GridLabelAnnotationView.h"

#include <QPainter>

#include <cstdio>
#include <cstdlib>

GridLabelAnnotationView::GridLabelAnnotationView(const QVariant &annotation,
                                                 const QString &reuseIdentifier)
    : GridLabelAnnotationView(annotation, reuseIdentifier, QRectF())
{
}

GridLabelAnnotationView::GridLabelAnnotationView(const QVariant &annotation,
                                                 const QString &reuseIdentifier,
                                                 const QRectF &initialFrame)
    : m_annotation(annotation), m_reuseIdentifier(reuseIdentifier), m_frame(initialFrame)
{
    setFrame(QRectF(frame().topLeft(), QSizeF(40.0, 40.0)));
    // The corners outside the disc show the map.
    setOpaque(false);
}

GridLabelAnnotationView GridLabelAnnotationView::fromArchive(const QByteArray &)
{
    qFatal("Cannot decode");
    std::abort(); // qFatal is not declared noreturn in Qt 6.4
}

void GridLabelAnnotationView::drawRect(QPainter &painter, const QRectF &rect) const
{
    // QString::asprintf formats numbers the same in every locale.
    const QByteArray line =
        QString::asprintf("{{%g, %g}, {%g, %g}}\n", rect.x(), rect.y(), rect.width(), rect.height())
            .toUtf8();
    std::fwrite(line.constData(), 1, std::size_t(line.size()), stdout);
    std::fflush(stdout);

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(Qt::green));
    painter.drawEllipse(rect);
    painter.restore();
}
