import QtQuick
import QtQuick.Templates as T

// The base of every button of the app: a screen reader finds it by its label and presses it
// with its press action, which Qt 6.4's buttons ignore unless told, as a finger would.
T.AbstractButton {
    id: control

    property string accessibilityLabel

    function pressForScreenReader() {
        if (control.enabled)
            control.clicked()
    }

    Accessible.role: Accessible.Button
    Accessible.name: control.accessibilityLabel
    Accessible.onPressAction: control.pressForScreenReader()
}
