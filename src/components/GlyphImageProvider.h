#pragma once

#include <QQuickImageProvider>

// The app's glyphs (the keypads' delete key, the tracking button's arrow), as masks filled with
// one colour: a button asks for "NAME/AARRGGBB" (e.g. "delete/ff0a5fc2"), so a glyph always
// takes the button's foreground.
class GlyphImageProvider : public QQuickImageProvider
{
public:
    static constexpr QLatin1StringView providerId{"glyph"};

    GlyphImageProvider();

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;

    // The glyph's outline in a 34 × 24 box; empty for an unknown name.
    static QPainterPath glyphPath(QStringView name);

private:
    static QPainterPath lineGlyph(QStringView name);
};
