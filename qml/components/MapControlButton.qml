import QtQuick
import QtQuick.Templates as T
import Veltor

// A round button over the map, big enough for a gloved finger.
T.AbstractButton {
    id: control

    property string title
    property string accessibilityTitle

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

    Accessible.role: Accessible.Button
    Accessible.name: control.accessibilityTitle
    Accessible.onPressAction: control.clicked()
}
