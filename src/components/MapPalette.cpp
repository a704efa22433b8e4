#include "MapPalette.h"

const MapPalette &MapPalette::day()
{
    // Water is dark enough against land to tell them apart at 3:1; the grid keeps its own
    // colours of the day appearance.
    static const MapPalette palette{QColor(0x3f, 0x6d, 0x96),
                                    QColor(244, 240, 230),
                                    QColor(140, 160, 176),
                                    QColor(170, 160, 156),
                                    QColor::fromRgbF(0.0f, 0.0f, 0.5f, 0.5f),
                                    QColor::fromRgbF(1.0f, 1.0f, 1.0f, 0.66f),
                                    QColor::fromRgbF(0.2f, 0.2f, 0.4f, 1.0f),
                                    QColor::fromRgbF(1.0f, 1.0f, 1.0f, 0.75f),
                                    QColor(0xe0, 0x23, 0x23),
                                    QColor(0x7a, 0x0c, 0x0c),
                                    QColor(0x30, 0x30, 0x30),
                                    QColor(255, 255, 255, 170),
                                    QColor(0x1a, 0x73, 0xe8),
                                    Qt::white,
                                    QColor(0, 0, 0, 60),
                                    QColor(0x1a, 0x73, 0xe8, 150),
                                    QColor(0x1a, 0x73, 0xe8, 40),
                                    QColor(0, 0, 0, 0),
                                    QColor(0x3f, 0x6d, 0x96),
                                    QColor(0x2c, 0x2c, 0x34),
                                    QColor(244, 240, 230, 210)};
    return palette;
}

const MapPalette &MapPalette::night()
{
    // Dark land, with water lighter by 3:1 so that lakes and coasts still read at night.
    static const MapPalette palette{QColor(0x3d, 0x70, 0xa0),
                                    QColor(0x1c, 0x22, 0x28),
                                    QColor(0x5a, 0x6a, 0x78),
                                    QColor(0x4a, 0x46, 0x44),
                                    QColor(0xb4, 0xc2, 0xcc, 0x80),
                                    QColor(0x10, 0x16, 0x1c, 0xe0),
                                    QColor(0xc8, 0xd2, 0xda),
                                    QColor(0x10, 0x16, 0x1c, 0xc0),
                                    QColor(0xff, 0xb0, 0x20),
                                    QColor(0x80, 0x50, 0x00),
                                    QColor(0x90, 0x98, 0xa0),
                                    QColor(255, 255, 255, 90),
                                    QColor(0x5a, 0x9c, 0xf0),
                                    QColor(0x20, 0x28, 0x30),
                                    QColor(0, 0, 0, 90),
                                    QColor(0x5a, 0x9c, 0xf0, 150),
                                    QColor(0x5a, 0x9c, 0xf0, 40),
                                    QColor(0xb4, 0xc2, 0xcc),
                                    QColor(0x3d, 0x70, 0xa0),
                                    QColor(0xc8, 0xd2, 0xda),
                                    QColor(0x1c, 0x22, 0x28, 0xc0)};
    return palette;
}

const MapPalette &MapPalette::red()
{
    // Black land, red water and bright red lines and names over black halos: nothing but red,
    // and every meaningful line and name still readable.
    static const MapPalette palette{
        QColor(0xc8, 0, 0),      QColor(0, 0, 0),          QColor(0x90, 0, 0),
        QColor(0x60, 0, 0),      QColor(0xff, 0, 0, 0xd0), QColor(0, 0, 0, 0xe6),
        QColor(0xff, 0, 0),      QColor(0, 0, 0, 0xd0),    QColor(0xff, 0, 0),
        QColor(0x50, 0, 0),      QColor(0x70, 0, 0),       QColor(0xff, 0, 0, 60),
        QColor(0xff, 0, 0),      QColor(0x20, 0, 0),       QColor(0, 0, 0, 90),
        QColor(0xff, 0, 0, 150), QColor(0xff, 0, 0, 40),   QColor(0xb0, 0, 0),
        QColor(0xc8, 0, 0),      QColor(0xff, 0, 0),       QColor(0, 0, 0, 0xd0)};
    return palette;
}

const MapPalette &MapPalette::forAppearance(Appearance appearance)
{
    switch (appearance) {
    case Appearance::Night:
        return night();
    case Appearance::Red:
        return red();
    case Appearance::Day:
    case Appearance::Automatic: // resolved before drawing; day if not
        break;
    }
    return day();
}
