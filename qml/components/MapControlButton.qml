import QtQuick
import Veltor

// A round button over the map, big enough for a gloved finger.
PressableButton {
    id: control

    property string title

    implicitWidth: Theme.minimumTouchSize
    implicitHeight: Theme.minimumTouchSize
    font: Theme.keyFont

    background: Rectangle {
        radius: width / 2
        color: Theme.mapControlColor
        border.color: Theme.dividerColor
    }
    contentItem: Text {
        text: control.title
        color: Theme.mapControlTextColor
        font: control.font
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
}
