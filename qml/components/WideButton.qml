import QtQuick
import QtQuick.Templates as T
import Veltor

// A full-width button with a label, such as the tracking button: its alternate style is the
// filled one, for an action that is on.
T.AbstractButton {
    id: control

    property string title
    property string accessibilityTitle
    property string accessibilityHint
    property bool alternateStyle: false

    implicitHeight: 64
    font: Theme.body2Font

    background: Rectangle {
        radius: 10
        color: Theme.keyBackgroundColor(control.alternateStyle, control.down)
        border.color: Theme.tintColor
        border.width: 2
    }
    contentItem: Text {
        text: control.title
        color: Theme.keyForegroundColor(control.alternateStyle, control.down)
        font: control.font
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    Accessible.role: Accessible.Button
    Accessible.name: control.accessibilityTitle
    Accessible.description: control.accessibilityHint
    Accessible.onPressAction: control.clicked()
}
