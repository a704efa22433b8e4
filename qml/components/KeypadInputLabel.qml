import QtQuick
import QtQuick.Controls.Basic
import Veltor

// What has been typed on a keypad: thin 48-point text in the tint colour, cut in the middle
// when too long. It takes the focus after each key, so a screen reader reads it out.
Label {
    property string accessibilityLabel

    color: Theme.tintColor
    font: Theme.keypadInputFont
    elide: Text.ElideMiddle
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    activeFocusOnTab: true

    Accessible.role: Accessible.StaticText
    Accessible.name: accessibilityLabel
}
