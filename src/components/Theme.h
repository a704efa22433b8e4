#pragma once

#include "Appearance.h"

#include <QColor>
#include <QFont>
#include <QObject>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <optional>

// The text colour of every label and read-out in the day appearance: a grey of 0.15.
QColor veltorTextColor();

// Every colour, font and size the screens use, in three appearances: day, night (dark
// surfaces) and red (black and deep red only, to keep night vision at the rig). Screens bind
// to the roles, so switching the appearance repaints everything at once, with no white flash.
class Theme : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(Appearances::Appearance appearance READ appearance WRITE setAppearance NOTIFY
                   appearanceChanged)
    Q_PROPERTY(QColor windowColor READ windowColor NOTIFY appearanceChanged)
    Q_PROPERTY(QColor surfaceColor READ surfaceColor NOTIFY appearanceChanged)
    Q_PROPERTY(QColor textColor READ textColor NOTIFY appearanceChanged)
    // The caption style's own colour; text that must be read takes secondaryTextColor.
    Q_PROPERTY(QColor captionColor READ captionColor NOTIFY appearanceChanged)
    Q_PROPERTY(QColor secondaryTextColor READ secondaryTextColor NOTIFY appearanceChanged)
    // Meaningful graphics that are not text: a switch's track when off, outlines of controls.
    Q_PROPERTY(QColor controlColor READ controlColor NOTIFY appearanceChanged)
    Q_PROPERTY(QColor tintColor READ tintColor NOTIFY appearanceChanged)
    Q_PROPERTY(QColor keyFaceColor READ keyFaceColor NOTIFY appearanceChanged)
    Q_PROPERTY(QColor dividerColor READ dividerColor NOTIFY appearanceChanged)
    Q_PROPERTY(QColor warningColor READ warningColor NOTIFY appearanceChanged)
    Q_PROPERTY(QColor scrimColor READ scrimColor NOTIFY appearanceChanged)
    Q_PROPERTY(QColor mapControlColor READ mapControlColor NOTIFY appearanceChanged)
    Q_PROPERTY(QColor mapControlTextColor READ mapControlTextColor NOTIFY appearanceChanged)
    Q_PROPERTY(QFont titleFont READ titleFont CONSTANT)
    Q_PROPERTY(QFont body1Font READ body1Font CONSTANT)
    Q_PROPERTY(QFont body2Font READ body2Font CONSTANT)
    Q_PROPERTY(QFont captionFont READ captionFont CONSTANT)
    Q_PROPERTY(QFont secondaryFont READ secondaryFont CONSTANT)
    Q_PROPERTY(QFont underlineButtonFont READ underlineButtonFont CONSTANT)
    Q_PROPERTY(QFont keyFont READ keyFont CONSTANT)
    Q_PROPERTY(QFont keypadInputFont READ keypadInputFont CONSTANT)
    Q_PROPERTY(QFont readoutFont READ readoutFont CONSTANT)
    // A gloved finger needs a target this big, in points; keys are never smaller.
    Q_PROPERTY(qreal minimumTouchSize READ minimumTouchSize CONSTANT)
    // Nothing that is pressed is smaller than this, in points, on either side.
    Q_PROPERTY(qreal minimumTargetSize READ minimumTargetSize CONSTANT)
    Q_PROPERTY(qreal spacing READ spacing CONSTANT)
    // Dims a pressed underline button at once; the release fades back over this time.
    Q_PROPERTY(qreal pressedOpacity READ pressedOpacity CONSTANT)
    Q_PROPERTY(int releaseFadeMs READ releaseFadeMs CONSTANT)
    // What a button says before it is given a title of its own.

public:
    explicit Theme(QObject *parent = nullptr);

    Appearance appearance() const { return m_appearance; }
    void setAppearance(Appearance appearance);

    QColor windowColor() const;
    QColor surfaceColor() const;
    QColor textColor() const;
    QColor captionColor() const;
    QColor secondaryTextColor() const;
    QColor controlColor() const;
    QColor tintColor() const;
    QColor keyFaceColor() const;
    QColor dividerColor() const;
    QColor warningColor() const;
    QColor scrimColor() const;
    QColor mapControlColor() const;
    QColor mapControlTextColor() const;

    static QFont titleFont();
    static QFont body1Font();
    static QFont body2Font();
    // Italic, as the caption style is, except in scripts that have no italics (Chinese,
    // Japanese, Korean), where slanting only smears the strokes.
    static QFont captionFont();
    static QFont secondaryFont();
    static QFont underlineButtonFont();
    static QFont keyFont();
    static QFont keypadInputFont();
    static QFont readoutFont();

    static constexpr qreal minimumTouchSize() { return 56.0; }
    static constexpr qreal minimumTargetSize() { return 48.0; }
    static constexpr qreal spacing() { return 12.0; }
    static constexpr qreal pressedOpacity() { return 0.3; }
    static constexpr int releaseFadeMs() { return 250; }

    // A key is the face colour with tint text; pressed, or of the alternate style, the two swap.
    Q_INVOKABLE static bool keyInverted(bool alternateStyle, bool pressed)
    {
        return alternateStyle != pressed;
    }
    // A key that cannot be pressed now shows its title faintly.
    Q_INVOKABLE static qreal keyContentOpacity(bool enabled) { return enabled ? 1.0 : 0.35; }
    // The contrast ratio of a colour laid over another, as the accessibility guidelines
    // define it: 1 to 21.
    static double contrast(const QColor &foreground, const QColor &background);
    // One device pixel, in points.
    Q_INVOKABLE static qreal hairline(qreal devicePixelRatio);
    // What a key says to a screen reader: its accessibility title, else its title.
    Q_INVOKABLE static QString keyAccessibilityLabel(const QString &title,
                                                     const QString &accessibilityTitle);
    // The glyph NAME drawn in COLOUR, for an Image; empty for no glyph.
    Q_INVOKABLE static QUrl glyphSource(const QString &name, const QColor &colour);
    // A form sheet is a centred card where the window has room, else the whole window.
    Q_INVOKABLE static QSizeF formSheetSize(const QSizeF &window);
    // Where an action sheet stands: along the bottom of a narrow window, or as a popover under
    // its button (ANCHOR, in window coordinates) on a wide one.
    Q_INVOKABLE static QRectF actionSheetRect(const QSizeF &window, const QRectF &anchor,
                                              qreal contentHeight);
    // A drag that began at the left edge goes back once it has come this far right.
    Q_INVOKABLE static bool isBackSwipe(qreal startX, qreal travelX)
    {
        return startX < 24.0 && travelX > 80.0;
    }
    // A sheet pulled down this far closes, as Cancel does.
    Q_INVOKABLE static bool isDismissSwipe(qreal travelY) { return travelY > 120.0; }
    // Two panels side by side in a landscape window (GridLayout.LeftToRight), else stacked.
    Q_INVOKABLE static int panelFlow(qreal width, qreal height);

signals:
    void appearanceChanged();

private:
    Appearance m_appearance = Appearance::Day;
};
