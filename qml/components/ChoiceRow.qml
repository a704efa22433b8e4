import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Veltor

// One choice of a picker: what it looks like, and a checkmark on the current one.
T.RadioButton {
    id: control

    property string accessibilityLabel

    // The button's own text and checked state are what the choice looks like and whether it
    // is the current one.
    // The mark follows the setting, never a click by itself.
    checkable: false
    // Several pickers may share one column; each choice's mark follows its own setting.
    autoExclusive: false
    implicitHeight: Theme.minimumTouchSize
    Accessible.name: control.accessibilityLabel
    Accessible.onPressAction: control.clicked()

    background: Rectangle {
        color: Theme.keyFaceColor
        opacity: Theme.keyContentOpacity(!control.down)
    }
    contentItem: RowLayout {
        Body1Label {
            Accessible.ignored: true
            Layout.leftMargin: Theme.spacing
            Layout.fillWidth: true
            text: control.text
        }
        TintLabel {
            Accessible.ignored: true
            Layout.rightMargin: Theme.spacing
            text: "✓"
            font: Theme.body2Font
            visible: control.checked
        }
    }
}
