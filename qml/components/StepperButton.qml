import QtQuick
import Veltor

// A button that steps a number up or down: a square outlined key with a heavy plus or minus, big
// enough for a gloved finger, faint while it cannot step further.
PressableButton {
    id: control

    // "plus" or "minus".
    property string glyph: "plus"

    implicitWidth: Theme.minimumTouchSize
    implicitHeight: Theme.minimumTouchSize

    background: Rectangle {
        radius: 8
        color: control.down ? Theme.tintColor : Theme.keyFaceColor
        border.color: Theme.controlColor
        border.width: 2
    }
    contentItem: Item {
        opacity: Theme.keyContentOpacity(control.enabled)
        Image {
            anchors.centerIn: parent
            source: Theme.glyphSource(control.glyph,
                                      control.down ? Theme.keyFaceColor : Theme.tintColor)
            sourceSize.width: 34
            sourceSize.height: 24
        }
    }
}
