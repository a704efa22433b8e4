#include "MapViewNode.h"

#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRectangleNode>
#include <QSGTexture>

#include <cmath>

namespace {

// Pin: a red head on a short needle, 30 × 46 points, its tip at the bottom centre.
constexpr double pinWidth = 30.0;
constexpr double pinHeight = 46.0;
constexpr double dotRadius = 9.0;
// Circles larger than this many pixels are drawn from this size, scaled up.
constexpr int maxCircleRadiusPixels = 1024;

bool hasTint(const QColor &tint)
{
    return tint.alpha() > 0;
}

} // namespace

MapViewNode::MapViewNode(QQuickWindow *window, const QColor &background)
    : m_window(window), m_backgroundColor(background)
{
    m_background = window->createRectangleNode();
    m_background->setColor(m_backgroundColor);
    appendChildNode(m_background);
}

MapViewNode::~MapViewNode()
{
    // Child nodes go with QSGNode's destructor; they do not own their textures.
    dropTextures();
}

QImage MapViewNode::pinImage(double devicePixelRatio, const MapPalette &palette)
{
    QImage image(QSize(int(std::ceil(pinWidth * devicePixelRatio)),
                       int(std::ceil(pinHeight * devicePixelRatio))),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(devicePixelRatio, devicePixelRatio);
    const double headRadius = pinWidth * 0.5 - 2.0;
    const QPointF head(pinWidth * 0.5, headRadius + 2.0);
    // Needle, then a head with a dark rim that stands out on land, sea and grid alike.
    painter.setPen(QPen(palette.pinNeedle, 3.0, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(head.x(), head.y() + headRadius * 0.6),
                     QPointF(head.x(), pinHeight - 1.5));
    painter.setPen(QPen(palette.pinRim, 2.0));
    painter.setBrush(palette.pinHead);
    painter.drawEllipse(head, headRadius, headRadius);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.pinShine);
    painter.drawEllipse(head + QPointF(-headRadius * 0.35, -headRadius * 0.35), headRadius * 0.3,
                        headRadius * 0.3);
    return image;
}

QImage MapViewNode::userDotImage(double devicePixelRatio, const MapPalette &palette)
{
    const int size = int(std::ceil((dotRadius * 2.0 + 4.0) * devicePixelRatio));
    QImage image(QSize(size, size), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(devicePixelRatio, devicePixelRatio);
    const QPointF center(dotRadius + 2.0, dotRadius + 2.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.dotShadow);
    painter.drawEllipse(center, dotRadius + 1.5, dotRadius + 1.5);
    painter.setBrush(palette.dotRing);
    painter.drawEllipse(center, dotRadius, dotRadius);
    painter.setBrush(palette.dot);
    painter.drawEllipse(center, dotRadius - 3.0, dotRadius - 3.0);
    return image;
}

const QImage &MapViewNode::circleImage(int radiusPixels, double devicePixelRatio)
{
    if (radiusPixels == m_circleRadius && !m_circle.isNull())
        return m_circle;
    m_circleRadius = radiusPixels;
    const int size = 2 * radiusPixels + 4;
    m_circle = QImage(QSize(size, size), QImage::Format_ARGB32_Premultiplied);
    m_circle.fill(Qt::transparent);
    QPainter painter(&m_circle);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_palette.accuracyStroke, std::max(1.0, devicePixelRatio)));
    painter.setBrush(m_palette.accuracyFill);
    painter.drawEllipse(QPointF(size * 0.5, size * 0.5), radiusPixels, radiusPixels);
    return m_circle;
}

void MapViewNode::beginFrame(const QRectF &bounds)
{
    m_background->setRect(bounds);
    m_used = 0;
    for (auto &[key, texture] : m_textures)
        texture.used = false;
}

void MapViewNode::setNightTint(const QColor &tint)
{
    if (tint == m_nightTint)
        return;
    m_nightTint = tint;
    // Every picture must be uploaded again in the new colours.
    dropTextures();
}

void MapViewNode::setPalette(const MapPalette &palette)
{
    if (palette == m_palette)
        return;
    m_palette = palette;
    m_backgroundColor = palette.ocean;
    m_background->setColor(m_backgroundColor);
    // Drawn again on their next use; the old pictures' textures go with the frame.
    m_pin = QImage();
    m_dot = QImage();
    m_circle = QImage();
    m_circleRadius = 0;
}

QImage MapViewNode::nightImage(const QImage &image, const QColor &tint)
{
    QImage night = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const int red = tint.red();
    const int green = tint.green();
    const int blue = tint.blue();
    for (int y = 0; y < night.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(night.scanLine(y));
        for (int x = 0; x < night.width(); ++x) {
            const QRgb pixel = line[x];
            const int alpha = qAlpha(pixel);
            // Premultiplied: the lightness is at most alpha, and so is its reverse.
            const int light = alpha - qGray(pixel);
            line[x] = qRgba(light * red / 255, light * green / 255, light * blue / 255, alpha);
        }
    }
    return night;
}

void MapViewNode::dropTextures()
{
    for (auto &[key, texture] : m_textures)
        delete texture.texture;
    m_textures.clear();
    // A new texture may come at an old one's address, which addImage would take as unchanged.
    for (QSGImageNode *node : m_images)
        node->markDirty(QSGNode::DirtyMaterial);
}

QSGTexture *MapViewNode::textureFor(const QImage &image, bool filtered)
{
    Texture &entry = m_textures[image.cacheKey()];
    if (!entry.texture) {
        entry.texture = m_window->createTextureFromImage(
            filtered && hasTint(m_nightTint) ? nightImage(image, m_nightTint) : image);
        if (!entry.texture)
            return nullptr;
        entry.texture->setFiltering(QSGTexture::Linear);
    }
    entry.used = true;
    return entry.texture;
}

void MapViewNode::addImage(const QImage &image, const QRectF &target, const QRectF &source,
                           bool filtered)
{
    if (image.isNull() || target.isEmpty())
        return;
    QSGTexture *texture = textureFor(image, filtered);
    if (!texture)
        return; // no texture this frame (a lost device): the background shows instead
    const bool reused = m_used < m_images.size();
    QSGImageNode *node = reused ? m_images[m_used] : m_window->createImageNode();
    ++m_used;
    if (!reused) {
        node->setOwnsTexture(false);
        node->setFiltering(QSGTexture::Linear);
    }
    // A setter marks its node dirty even when nothing changes, and a dirty node is painted
    // again: set only what differs, so a dropping pin repaints the pin and not every tile.
    if (node->texture() != texture)
        node->setTexture(texture);
    if (node->rect() != target)
        node->setRect(target);
    if (node->sourceRect() != source)
        node->setSourceRect(source);
    // Only a complete node may join the tree: the software renderer reads it at once.
    if (!reused) {
        appendChildNode(node);
        m_images.push_back(node);
    }
}

void MapViewNode::addPin(QPointF at, double devicePixelRatio)
{
    if (m_pin.isNull() || m_pin.width() != int(std::ceil(pinWidth * devicePixelRatio)))
        m_pin = pinImage(devicePixelRatio, m_palette);
    addImage(m_pin, QRectF(at.x() - pinWidth * 0.5, at.y() - pinHeight, pinWidth, pinHeight),
             QRectF(QPointF(0, 0), m_pin.size()), false);
}

void MapViewNode::addUserDot(QPointF at, double devicePixelRatio)
{
    const double half = dotRadius + 2.0;
    if (m_dot.isNull() || m_dot.width() != int(std::ceil(2.0 * half * devicePixelRatio)))
        m_dot = userDotImage(devicePixelRatio, m_palette);
    addImage(m_dot, QRectF(at.x() - half, at.y() - half, 2.0 * half, 2.0 * half),
             QRectF(QPointF(0, 0), m_dot.size()), false);
}

void MapViewNode::addAccuracyCircle(QPointF center, double radius, double devicePixelRatio)
{
    const int pixels = std::min(int(std::lround(radius * devicePixelRatio)), maxCircleRadiusPixels);
    const QImage &image = circleImage(pixels, devicePixelRatio);
    // The image has a 2-pixel margin around the circle; scale it with the circle.
    const double scale = radius / pixels;
    const double half = (pixels + 2) * scale;
    addImage(image, QRectF(center.x() - half, center.y() - half, 2.0 * half, 2.0 * half),
             QRectF(QPointF(0, 0), image.size()), false);
}

void MapViewNode::endFrame()
{
    while (m_images.size() > m_used) {
        QSGImageNode *node = m_images.back();
        m_images.pop_back();
        removeChildNode(node);
        delete node;
    }
    for (auto it = m_textures.begin(); it != m_textures.end();) {
        if (it->second.used) {
            ++it;
        } else {
            delete it->second.texture;
            it = m_textures.erase(it);
        }
    }
}
