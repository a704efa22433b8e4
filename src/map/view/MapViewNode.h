#pragma once

#include "MapPalette.h"

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRectF>
#include <QSGTransformNode>

#include <unordered_map>
#include <vector>

class QQuickWindow;
class QSGImageNode;
class QSGRectangleNode;
class QSGTexture;

// The map's scene-graph node (a transform node, which the software renderer needs to place
// its children): a background and a list of images (tiles, then the user's
// location, then pins), rebuilt each frame from reused child nodes. It owns the textures and
// keeps one per image for as long as a frame uses that image. Lives on the render thread.
class MapViewNode : public QSGTransformNode
{
public:
    // BACKGROUND shows wherever no tile has arrived yet.
    MapViewNode(QQuickWindow *window, const QColor &background);
    ~MapViewNode() override;

    MapViewNode(const MapViewNode &) = delete;
    MapViewNode &operator=(const MapViewNode &) = delete;

    static QImage pinImage(double devicePixelRatio, const MapPalette &palette = MapPalette::day());
    static QImage userDotImage(double devicePixelRatio,
                               const MapPalette &palette = MapPalette::day());

    // The colours of the pin, the dot and the accuracy circle, and of the empty map.
    void setPalette(const MapPalette &palette);

    // Raster tiles drawn dark, their lines and labels light in this colour, for night eyes. A
    // transparent tint draws them as they are.
    void setNightTint(const QColor &tint);
    // The picture with its lightness turned over and coloured by the tint.
    static QImage nightImage(const QImage &image, const QColor &tint);

    void beginFrame(const QRectF &bounds);
    // Pictures with filtered true (the base tiles) follow the night tint.
    void addImage(const QImage &image, const QRectF &target, const QRectF &source,
                  bool filtered = true);
    // The pin's needle tip and the dot's centre at `at`.
    void addPin(QPointF at, double devicePixelRatio);
    void addUserDot(QPointF at, double devicePixelRatio);
    void addAccuracyCircle(QPointF center, double radius, double devicePixelRatio);
    // Drops the child nodes and textures this frame did not use.
    void endFrame();

private:
    struct Texture
    {
        QSGTexture *texture = nullptr;
        bool used = false;
    };

    QSGTexture *textureFor(const QImage &image, bool filtered);
    void dropTextures();
    // A disc picture drawn once per size and density.
    const QImage &circleImage(int radiusPixels, double devicePixelRatio);

    QQuickWindow *m_window;
    QSGRectangleNode *m_background = nullptr;
    std::vector<QSGImageNode *> m_images;
    std::size_t m_used = 0;
    std::unordered_map<qint64, Texture> m_textures;
    QImage m_pin;
    QImage m_dot;
    QImage m_circle;
    int m_circleRadius = 0;
    QColor m_nightTint{0, 0, 0, 0};
    QColor m_backgroundColor;
    MapPalette m_palette = MapPalette::day();
};
