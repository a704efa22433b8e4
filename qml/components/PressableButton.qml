import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Templates as T
import Veltor

// The base of every button of the app: a screen reader finds it by its label and presses it
// with its press action, which Qt 6.4's buttons ignore unless told, as a finger would; the
// keyboard presses it with Space or Enter once Tab has reached it, and a ring shows where Tab
// is. A pointer over it tints it, and an icon-only button names itself in a tooltip.
T.AbstractButton {
    id: control

    property string accessibilityLabel
    // Shown on hover; icon-only buttons pass their spoken name.
    property string toolTip
    // The background's corners, followed by the hover tint and the focus ring.
    property real cornerRadius: 0

    function pressForScreenReader() {
        if (control.enabled)
            control.clicked()
    }

    hoverEnabled: true
    focusPolicy: Qt.StrongFocus

    // Space presses a button by itself; Enter does as well, as on the desktop.
    Keys.onReturnPressed: control.pressForScreenReader()
    Keys.onEnterPressed: control.pressForScreenReader()

    ToolTip.visible: control.hovered && control.toolTip.length > 0
    ToolTip.text: control.toolTip
    ToolTip.delay: 600

    Rectangle {
        anchors.fill: parent
        radius: control.cornerRadius
        color: Theme.tintColor
        opacity: 0.12
        visible: control.hovered && control.enabled
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: -3
        radius: control.cornerRadius + 3
        color: "transparent"
        border.color: Theme.tintColor
        border.width: 3
        visible: control.visualFocus
    }

    Accessible.role: Accessible.Button
    Accessible.name: control.accessibilityLabel
    Accessible.onPressAction: control.pressForScreenReader()
}
