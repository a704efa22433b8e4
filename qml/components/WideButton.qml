import QtQuick
import Veltor

// A full-width button with a label, such as the tracking button: its alternate style is the
// filled one, for an action that is on.
PressableButton {
    id: control

    property string title
    property string accessibilityHint
    property bool alternateStyle: false
    property color backgroundColor: Theme.keyFaceColor
    property color foregroundColor: Theme.tintColor

    implicitHeight: 64
    font: Theme.body2Font

    background: Rectangle {
        radius: 10
        color: control.backgroundColor
        border.color: Theme.tintColor
        border.width: 2
    }
    contentItem: Text {
        text: control.title
        color: control.foregroundColor
        font: control.font
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }

    states: State {
        name: "inverted"
        when: Theme.keyInverted(control.alternateStyle, control.down)
        PropertyChanges {
            control.backgroundColor: Theme.tintColor
            control.foregroundColor: Theme.keyFaceColor
        }
    }

    Accessible.description: control.accessibilityHint
}
