import QtQuick
import Veltor

// A round button over the map, big enough for a gloved finger.
PressableButton {
    id: control

    property string title
    // A glyph in place of the title.
    property string glyph

    implicitWidth: Theme.minimumTouchSize
    implicitHeight: Theme.minimumTouchSize
    font: Theme.keyFont

    cornerRadius: width / 2

    background: Rectangle {
        radius: control.cornerRadius
        color: Theme.mapControlColor
        border.color: Theme.dividerColor
    }
    contentItem: Item {
        Text {
            anchors.fill: parent
            text: control.title
            color: Theme.mapControlTextColor
            font: control.font
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
        }
        Image {
            anchors.centerIn: parent
            source: Theme.glyphSource(control.glyph, Theme.mapControlTextColor)
            sourceSize.width: 34
            sourceSize.height: 24
        }
    }
}
