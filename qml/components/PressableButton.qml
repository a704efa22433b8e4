import QtQuick
import QtQuick.Templates as T

// The base of every button of the app: a screen reader finds it by its label and presses it
// with its press action, which Qt 6.4's buttons ignore unless told, as a finger would; the
// keyboard presses it with Space or Enter once Tab has reached it.
T.AbstractButton {
    id: control

    property string accessibilityLabel

    function pressForScreenReader() {
        if (control.enabled)
            control.clicked()
    }

    // Space presses a button by itself; Enter does as well, as on the desktop.
    Keys.onReturnPressed: control.pressForScreenReader()
    Keys.onEnterPressed: control.pressForScreenReader()

    Accessible.role: Accessible.Button
    Accessible.name: control.accessibilityLabel
    Accessible.onPressAction: control.pressForScreenReader()
}
