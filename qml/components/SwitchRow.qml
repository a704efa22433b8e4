import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Veltor

// A settings row with an on/off switch; a tap anywhere on the row flips it.
T.Switch {
    id: control

    property string title
    property color trackColor: Theme.dividerColor
    property real knobX: 2

    // The switch shows the setting; a click asks for a change rather than making one.
    checkable: false
    implicitHeight: Theme.minimumTouchSize
    Accessible.name: control.title
    Accessible.onPressAction: control.clicked()

    states: State {
        name: "on"
        when: control.checked
        PropertyChanges {
            control.trackColor: Theme.tintColor
            control.knobX: 22
        }
    }

    background: Rectangle {
        color: Theme.keyFaceColor
    }
    contentItem: RowLayout {
        Body1Label {
            Accessible.ignored: true
            Layout.leftMargin: Theme.spacing
            Layout.fillWidth: true
            text: control.title
        }
        Rectangle {
            Layout.rightMargin: Theme.spacing
            implicitWidth: 52
            implicitHeight: 32
            radius: height / 2
            color: control.trackColor
            Rectangle {
                x: control.knobX
                y: 2
                width: 28
                height: 28
                radius: width / 2
                color: Theme.surfaceColor
                border.color: Theme.dividerColor
            }
        }
    }
}
