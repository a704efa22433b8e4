#include "Theme.h"

#include "GlyphImageProvider.h"

#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

struct Palette
{
    QColor window, surface, text, caption, secondaryText, tint, keyFace, divider, control,
        warning, scrim, mapControl, mapControlText;
};

// Every text stands at 4.5:1 or more against what it is drawn on, and every meaningful graphic
// (a switch's track, an outline, a focus ring) at 3:1 (ThemeTest computes each pair). Red keeps
// to red on black, its hierarchy by brightness: values brightest, secondary text just dimmer.
const Palette &paletteFor(Appearance appearance)
{
    static const std::array<Palette, 3> palettes{{
        // Day: white keys with blue text on light surfaces. The caption colour is the light grey
        // of the caption style, which no text that must be read uses.
        {QColor(0xff, 0xff, 0xff), QColor(0xf2, 0xf3, 0xf5), veltorTextColor(),
         QColor::fromRgbF(2.0 / 3, 2.0 / 3, 2.0 / 3), QColor(0x55, 0x5a, 0x60),
         QColor(0x0a, 0x5f, 0xc2), QColor(0xff, 0xff, 0xff), QColor(0xc6, 0xc9, 0xce),
         QColor(0x70, 0x76, 0x7e), QColor(0xfd, 0xe3, 0xd8), QColor(0, 0, 0, 0x66),
         QColor(0xff, 0xff, 0xff, 0xf0), veltorTextColor()},
        // Night: dark surfaces with amber, readable without lighting up a tent.
        {QColor(0x10, 0x16, 0x1c), QColor(0x18, 0x21, 0x2a), QColor(0xe6, 0xeb, 0xef),
         QColor(0x9a, 0xa8, 0xb6), QColor(0xa8, 0xb6, 0xc4), QColor(0xff, 0xb0, 0x20),
         QColor(0x1b, 0x25, 0x2f), QColor(0x2e, 0x3b, 0x47), QColor(0x80, 0x92, 0xa4),
         QColor(0x5a, 0x2a, 0x1a), QColor(0, 0, 0, 0x99), QColor(0x18, 0x21, 0x2a, 0xf0),
         QColor(0xe6, 0xeb, 0xef)},
        // Red: black and red only, nothing brighter than it must be to be read.
        {QColor(0, 0, 0), QColor(0x0c, 0, 0), QColor(0xff, 0, 0), QColor(0xee, 0, 0),
         QColor(0xee, 0, 0), QColor(0xff, 0, 0), QColor(0, 0, 0), QColor(0x40, 0, 0),
         QColor(0xc8, 0, 0), QColor(0x30, 0, 0), QColor(0, 0, 0, 0xb3), QColor(0, 0, 0, 0xf0),
         QColor(0xff, 0, 0)},
    }};
    // Automatic never reaches here resolved; if it does, day is the safe look.
    return appearance == Appearance::Automatic ? palettes[0]
                                               : palettes.at(static_cast<std::size_t>(appearance));
}

double channel(double value)
{
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double relativeLuminance(const QColor &colour)
{
    return 0.2126 * channel(colour.redF()) + 0.7152 * channel(colour.greenF()) +
           0.0722 * channel(colour.blueF());
}

QFont systemFont(qreal pointSize, QFont::Weight weight = QFont::Normal)
{
    QFont font;
    font.setPixelSize(qRound(pointSize));
    font.setWeight(weight);
    return font;
}

} // namespace

QColor veltorTextColor()
{
    return QColor::fromRgbF(0.15f, 0.15f, 0.15f, 1.0f);
}

Theme::Theme(QObject *parent) : QObject(parent) {}

void Theme::setAppearance(Appearance appearance)
{
    if (appearance == m_appearance)
        return;
    m_appearance = appearance;
    emit appearanceChanged();
}

QColor Theme::windowColor() const
{
    return paletteFor(m_appearance).window;
}
QColor Theme::surfaceColor() const
{
    return paletteFor(m_appearance).surface;
}
QColor Theme::textColor() const
{
    return paletteFor(m_appearance).text;
}
QColor Theme::captionColor() const
{
    return paletteFor(m_appearance).caption;
}
QColor Theme::secondaryTextColor() const
{
    return paletteFor(m_appearance).secondaryText;
}
QColor Theme::controlColor() const
{
    return paletteFor(m_appearance).control;
}
QColor Theme::tintColor() const
{
    return paletteFor(m_appearance).tint;
}
QColor Theme::keyFaceColor() const
{
    return paletteFor(m_appearance).keyFace;
}
QColor Theme::dividerColor() const
{
    return paletteFor(m_appearance).divider;
}
QColor Theme::warningColor() const
{
    return paletteFor(m_appearance).warning;
}
QColor Theme::scrimColor() const
{
    return paletteFor(m_appearance).scrim;
}
QColor Theme::mapControlColor() const
{
    return paletteFor(m_appearance).mapControl;
}
QColor Theme::mapControlTextColor() const
{
    return paletteFor(m_appearance).mapControlText;
}

QFont Theme::titleFont()
{
    return systemFont(34.0, QFont::Light);
}
QFont Theme::body1Font()
{
    return systemFont(17.0);
}
QFont Theme::body2Font()
{
    return systemFont(17.0, QFont::Bold);
}

QFont Theme::captionFont()
{
    QFont font = systemFont(15.0);
    const QLocale::Script script = QLocale().script();
    font.setItalic(script != QLocale::HanScript && script != QLocale::SimplifiedHanScript &&
                   script != QLocale::TraditionalHanScript && script != QLocale::JapaneseScript &&
                   script != QLocale::KoreanScript);
    return font;
}

QFont Theme::secondaryFont()
{
    return systemFont(15.0);
}

QFont Theme::underlineButtonFont()
{
    return systemFont(15.0);
}
QFont Theme::keyFont()
{
    return systemFont(28.0, QFont::Light);
}
QFont Theme::keypadInputFont()
{
    return systemFont(48.0, QFont::Thin);
}
QFont Theme::readoutFont()
{
    return systemFont(22.0, QFont::Medium);
}

double Theme::contrast(const QColor &foreground, const QColor &background)
{
    // What is seen is the foreground laid over the background.
    const double alpha = foreground.alphaF();
    const QColor seen = QColor::fromRgbF(
        float(foreground.redF() * alpha + background.redF() * (1.0 - alpha)),
        float(foreground.greenF() * alpha + background.greenF() * (1.0 - alpha)),
        float(foreground.blueF() * alpha + background.blueF() * (1.0 - alpha)));
    const double a = relativeLuminance(seen);
    const double b = relativeLuminance(background);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

qreal Theme::hairline(qreal devicePixelRatio)
{
    return devicePixelRatio > 0.0 ? 1.0 / devicePixelRatio : 1.0;
}

QString Theme::keyAccessibilityLabel(const QString &title, const QString &accessibilityTitle)
{
    return accessibilityTitle.isEmpty() ? title : accessibilityTitle;
}

QUrl Theme::glyphSource(const QString &name, const QColor &colour)
{
    if (name.isEmpty())
        return {};
    return QUrl(
        QStringLiteral("image://%1/%2/%3")
            .arg(GlyphImageProvider::providerId, name, colour.name(QColor::HexArgb).mid(1)));
}

QSizeF Theme::formSheetSize(const QSizeF &window)
{
    // A card narrower than this, or a window shorter than the keypad, wastes the screen.
    constexpr QSizeF card{540.0, 720.0};
    constexpr qreal margin = 40.0;
    if (window.width() < card.width() + 2 * margin || window.height() < 600.0)
        return window;
    return {card.width(), std::min(card.height(), window.height() - 2 * margin)};
}

QRectF Theme::actionSheetRect(const QSizeF &window, const QRectF &anchor, qreal contentHeight)
{
    constexpr qreal popoverWidth = 320.0;
    constexpr qreal margin = 8.0;
    // Never taller than the window: what does not fit scrolls inside.
    if (window.width() < 600.0) {
        const qreal height = std::min(contentHeight, window.height());
        return {0.0, window.height() - height, window.width(), height};
    }
    // Under the button, kept inside the window.
    const qreal x = std::clamp(anchor.right() - popoverWidth, margin,
                               std::max(margin, window.width() - popoverWidth - margin));
    const qreal height = std::min(contentHeight, std::max(0.0, window.height() - 2 * margin));
    const qreal y = std::min(anchor.bottom() + margin,
                             std::max(margin, window.height() - height - margin));
    return {x, y, popoverWidth, height};
}

int Theme::panelFlow(qreal width, qreal height)
{
    // GridLayout's flows: 0 left to right, 1 top to bottom.
    return width > height ? 0 : 1;
}
