#pragma once

#include <QByteArray>
#include <QRectF>
#include <QString>
#include <QVariant>

class QPainter;

// A 40 × 40 marker that draws a green disc, for labelling grid cells with annotations instead
// of drawing the labels into the overlay. The map panel does not create it today.
class GridLabelAnnotationView
{
public:
    explicit GridLabelAnnotationView(const QVariant &annotation,
                                     const QString &reuseIdentifier = QString());
    // The frame keeps initialFrame's origin and becomes 40 × 40 whatever its size was.
    GridLabelAnnotationView(const QVariant &annotation, const QString &reuseIdentifier,
                            const QRectF &initialFrame);

    // Views are not restored from archives: stops the program with "Cannot decode".
    [[noreturn]] static GridLabelAnnotationView fromArchive(const QByteArray &archive);

    const QVariant &annotation() const { return m_annotation; }
    void setAnnotation(const QVariant &annotation) { m_annotation = annotation; }
    const QString &reuseIdentifier() const { return m_reuseIdentifier; }
    QRectF frame() const { return m_frame; }
    void setFrame(const QRectF &frame) { m_frame = frame; }
    bool isOpaque() const { return m_opaque; }
    void setOpaque(bool opaque) { m_opaque = opaque; }

    // Writes rect to standard output as one line, "{{x, y}, {width, height}}", and fills the
    // ellipse inscribed in it with green.
    void drawRect(QPainter &painter, const QRectF &rect) const;

private:
    QVariant m_annotation;
    QString m_reuseIdentifier;
    QRectF m_frame;
    bool m_opaque = true;
};
