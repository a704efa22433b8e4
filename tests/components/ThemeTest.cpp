#include "Theme.h"
#include "GlyphImageProvider.h"
#include "MapPalette.h"

#include <QImage>
#include <QPainterPath>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

// Every pair the screens and the map draw, in every appearance: text at 4.5:1 or more against
// what is behind it, meaningful graphics at 3:1; red is red on black only, values brightest.
TEST(ThemeTest, EveryPairIsReadableInEveryAppearance)
{
    Theme theme;
    QSignalSpy changed(&theme, &Theme::appearanceChanged);
    const auto luminanceOrder = [](const QColor &brighter, const QColor &dimmer) {
        return Theme::contrast(brighter, Qt::black) > Theme::contrast(dimmer, Qt::black);
    };
    for (const Appearance appearance : {Appearance::Night, Appearance::Day, Appearance::Red}) {
        theme.setAppearance(appearance);
        const MapPalette &map = MapPalette::forAppearance(appearance);
        const QColor land = map.land, ocean = map.ocean;
        const auto laid = [](const QColor &top, const QColor &under) {
            const double a = top.alphaF();
            return QColor::fromRgbF(float(top.redF() * a + under.redF() * (1 - a)),
                                    float(top.greenF() * a + under.greenF() * (1 - a)),
                                    float(top.blueF() * a + under.blueF() * (1 - a)));
        };
        const struct
        {
            const char *what;
            QColor foreground, background;
            double least;
        } pairs[] = {
            {"text on window", theme.textColor(), theme.windowColor(), 4.5},
            {"text on surface", theme.textColor(), theme.surfaceColor(), 4.5},
            {"text on key", theme.textColor(), theme.keyFaceColor(), 4.5},
            {"text on warning", theme.textColor(), theme.warningColor(), 4.5},
            {"secondary on window", theme.secondaryTextColor(), theme.windowColor(), 4.5},
            {"secondary on surface", theme.secondaryTextColor(), theme.surfaceColor(), 4.5},
            {"secondary on key", theme.secondaryTextColor(), theme.keyFaceColor(), 4.5},
            {"tint on window", theme.tintColor(), theme.windowColor(), 4.5},
            {"tint on surface", theme.tintColor(), theme.surfaceColor(), 4.5},
            {"tint on key", theme.tintColor(), theme.keyFaceColor(), 4.5},
            {"key on tint", theme.keyFaceColor(), theme.tintColor(), 4.5},
            {"map control text", theme.mapControlTextColor(), laid(theme.mapControlColor(), land),
             4.5},
            {"control on key", theme.controlColor(), theme.keyFaceColor(), 3.0},
            {"control on surface", theme.controlColor(), theme.surfaceColor(), 3.0},
            {"control on map", theme.controlColor(), land, 3.0},
            {"land and water", land, ocean, 3.0},
            {"grid line on its halo", map.gridLine, laid(map.gridHalo, land), 3.0},
            {"grid halo on land", laid(map.gridHalo, land), land, 1.0},
            {"grid label on its plate", map.labelText, laid(map.labelPlate, land), 4.5},
            {"grid label on its plate over water", map.labelText, laid(map.labelPlate, ocean),
             4.5},
            {"place name on its halo", map.placeText, laid(map.placeHalo, land), 4.5},
            {"place name on its halo over water", map.placeText, laid(map.placeHalo, ocean), 4.5},
            {"river on land", map.river, land, 3.0},
            {"location dot on land", map.dot, land, 3.0},
        };
        for (const auto &pair : pairs) {
            EXPECT_GE(Theme::contrast(pair.foreground, pair.background), pair.least)
                << int(appearance) << " " << pair.what << ": " << pair.foreground.name().toStdString()
                << " on " << pair.background.name().toStdString();
        }
        // A grid line stands out from land and water alike: itself, or its halo around it.
        for (const QColor &ground : {land, ocean}) {
            EXPECT_GE(std::max(Theme::contrast(laid(map.gridLine, laid(map.gridHalo, ground)), ground),
                               Theme::contrast(laid(map.gridHalo, ground), ground)),
                      3.0)
                << int(appearance) << " grid on " << ground.name().toStdString();
        }
    }
    EXPECT_EQ(changed.count(), 3);
    // Red: nothing but red on black, and values brighter than secondary text.
    EXPECT_TRUE(luminanceOrder(theme.textColor(), theme.secondaryTextColor()));
    const MapPalette &red = MapPalette::red();
    for (const QColor &colour :
         {theme.windowColor(), theme.surfaceColor(), theme.textColor(), theme.captionColor(),
          theme.secondaryTextColor(), theme.tintColor(), theme.keyFaceColor(),
          theme.dividerColor(), theme.controlColor(), theme.warningColor(), theme.scrimColor(),
          theme.mapControlColor(), theme.mapControlTextColor(), red.ocean, red.land,
          red.coastline, red.border, red.gridLine, red.gridHalo, red.labelText, red.labelPlate,
          red.pinHead, red.pinRim, red.pinNeedle, red.pinShine, red.dot, red.dotRing,
          red.dotShadow, red.accuracyStroke, red.accuracyFill, red.rasterTint, red.river,
          red.placeText, red.placeHalo}) {
        SCOPED_TRACE(colour.name().toStdString());
        EXPECT_EQ(colour.green() | colour.blue(), 0);
    }
}

TEST(ThemeTest, SmallHelpersOfTheScreens)
{
    EXPECT_EQ(appearanceFromName(u"night"), Appearance::Night);
    EXPECT_EQ(appearanceFromName(u"Night"), std::nullopt);
    EXPECT_EQ(Theme::hairline(2.0), 0.5);
    EXPECT_NEAR(Theme::hairline(3.0), 0.333, 0.001);
    // A phone gets the whole window; a tablet a centred card.
    EXPECT_EQ(Theme::formSheetSize({390, 844}), QSizeF(390, 844));
    EXPECT_EQ(Theme::formSheetSize({844, 390}), QSizeF(844, 390));
    EXPECT_EQ(Theme::formSheetSize({1024, 768}), QSizeF(540, 688));
    EXPECT_TRUE(Theme::glyphSource(QString(), Qt::red).isEmpty());
}

TEST(ThemeTest, GlyphIsDrawnInTheKeysForegroundOnly)
{
    GlyphImageProvider provider;
    const QColor tint(0x0a, 0x5f, 0xc2);
    const QUrl source = Theme::glyphSource(QStringLiteral("delete"), tint);
    QSize size;
    const QImage glyph = provider.requestImage(source.path().mid(1), &size, QSize(68, 48));
    ASSERT_EQ(size, QSize(68, 48));
    int inColour = 0;
    int other = 0;
    for (int y = 0; y < glyph.height(); ++y) {
        for (int x = 0; x < glyph.width(); ++x) {
            const QColor c = QColor::fromRgba(glyph.pixel(x, y));
            if (c.alpha() == 255)
                (c.rgb() == tint.rgb() ? inColour : other) += 1;
        }
    }
    EXPECT_GT(inColour, 68 * 48 / 4);
    EXPECT_EQ(other, 0);
    // The cross is cut out of the key cap: the centre is clear.
    EXPECT_EQ(qAlpha(glyph.pixel(40, 24)), 0);
    EXPECT_TRUE(GlyphImageProvider::glyphPath(u"no-such-glyph").isEmpty());
}

} // namespace
