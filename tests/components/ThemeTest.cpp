#include "Theme.h"
#include "GlyphImageProvider.h"

#include <QImage>
#include <QPainterPath>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

TEST(ThemeTest, TextStandsOutInEveryAppearanceAndRedIsBlackAndDeepRedOnly)
{
    Theme theme;
    QSignalSpy changed(&theme, &Theme::appearanceChanged);
    const auto lightness = [](const QColor &c) { return c.toHsl().lightness(); };
    for (const auto appearance : {Appearance::Night, Appearance::Day, Appearance::Red}) {
        theme.setAppearance(appearance);
        // Text and the tint must differ clearly from the surfaces they are drawn on.
        EXPECT_GT(std::abs(lightness(theme.textColor()) - lightness(theme.windowColor())), 80)
            << int(appearance);
        EXPECT_GT(std::abs(lightness(theme.tintColor()) - lightness(theme.keyFaceColor())), 60)
            << int(appearance);
    }
    EXPECT_EQ(changed.count(), 3);
    for (const QColor &colour :
         {theme.windowColor(), theme.surfaceColor(), theme.textColor(), theme.captionColor(),
          theme.tintColor(), theme.keyFaceColor(), theme.dividerColor(), theme.warningColor(),
          theme.scrimColor(), theme.mapControlColor(), theme.mapControlTextColor()}) {
        SCOPED_TRACE(colour.name().toStdString());
        EXPECT_EQ(colour.green(), 0);
        EXPECT_EQ(colour.blue(), 0);
        EXPECT_LE(colour.red(), 0xc8);
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
