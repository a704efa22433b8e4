import QtQuick
import QtQuick.Controls.Basic
import Veltor

// What has been typed on a keypad: thin 48-point text in the tint colour, smaller where a narrow
// window needs it and cut in the middle only past that. It takes the focus after each key, so a
// screen reader reads it out.
Label {
    property string accessibilityLabel

    color: Theme.tintColor
    font: Theme.keypadInputFont
    elide: Text.ElideMiddle
    fontSizeMode: Text.HorizontalFit
    minimumPixelSize: 24
    horizontalAlignment: Text.AlignHCenter
    verticalAlignment: Text.AlignVCenter
    activeFocusOnTab: true

    Accessible.role: Accessible.StaticText
    Accessible.name: accessibilityLabel
}
