#include "PlaceNameOverlay.h"

#include "PlaceLabelLayout.h"

#include <QPainter>

#include <cmath>

PlaceNameOverlay::PlaceNameOverlay(std::shared_ptr<const PlaceLabelLayout> layout,
                                   const MapPalette &palette)
    : m_layout(std::move(layout)), m_palette(palette)
{
    // Over the grid a name's halo is solid, so a label beneath never shows through its letters.
    m_palette.placeHalo.setAlpha(255);
}

QImage PlaceNameOverlay::renderTile(const MapRect &rect, double zoomScale, double devicePixelRatio)
{
    const double width = std::round(rect.width * zoomScale * devicePixelRatio);
    const double height = std::round(rect.height * zoomScale * devicePixelRatio);
    if (!(width >= 1.0 && height >= 1.0 && width <= 8192.0 && height <= 8192.0))
        return {};
    QImage image(int(width), int(height), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (m_layout) {
        QPainter painter(&image);
        painter.setTransform(tileTransform(rect, zoomScale, devicePixelRatio));
        // A plate under each name, over every grid label it meets, so that no label beneath
        // shows through or beside its letters.
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_palette.placeHalo);
        const double inset = 2.0 / zoomScale;
        const auto plate = [&](const MapRect &box) {
            painter.drawRoundedRect(QRectF(box.x, box.y, box.width, box.height), inset * 2,
                                    inset * 2);
        };
        for (const PlaceLabel &label : m_layout->labelsIn(rect, zoomScale)) {
            if (!label.overGrid)
                continue;
            // The name's plate is its halo'd ink; the room kept around it covers nothing.
            const MapRect own = label.box.insetBy(inset, inset);
            for (const MapRect &covered : m_layout->gridPlatesMeeting(own, zoomScale))
                plate(covered.insetBy(-inset / 2, -inset / 2));
            plate(own);
        }
        m_layout->drawMapRect(rect, zoomScale, painter, m_palette,
                              PlaceLabelLayout::Layer::OverGrid);
    }
    return image;
}
