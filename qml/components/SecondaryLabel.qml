import QtQuick
import QtQuick.Controls.Basic
import Veltor

// Secondary text that must still be read: a caption over a read-out, a unit, a note. Upright and
// at full contrast in every appearance, unlike the caption style's light grey italics.
Label {
    color: Theme.secondaryTextColor
    font: Theme.secondaryFont
    wrapMode: Text.Wrap
}
