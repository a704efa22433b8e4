#pragma once

#include <QQuickImageProvider>

// The glyphs drawn on keys in place of a title, as masks filled with one colour: the key asks
// for "NAME/AARRGGBB" (e.g. "delete/ff0a5fc2"), so a glyph always takes the key's foreground.
class KeypadGlyphProvider : public QQuickImageProvider
{
public:
    static constexpr QLatin1StringView providerId{"keypadglyph"};

    KeypadGlyphProvider();

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;

    // The glyph's outline in a 34 × 24 box; empty for an unknown name.
    static QPainterPath glyphPath(QStringView name);
};
