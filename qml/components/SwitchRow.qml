import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Veltor

// A settings row with an on/off switch; a tap anywhere on the row flips it.
T.Switch {
    id: control

    property string title
    // Off: an outline and a knob in the control colour, both clear against the row; on: filled.
    property color trackColor: "transparent"
    property color knobColor: Theme.controlColor
    property real knobX: 4

    // The switch shows the setting; a click asks for a change rather than making one.
    checkable: false
    // A title too long for one line wraps, and the row grows with it.
    implicitHeight: Math.max(Theme.minimumTouchSize, implicitContentHeight + Theme.spacing)
    Accessible.name: control.title
    Accessible.onPressAction: control.clicked()

    states: State {
        name: "on"
        when: control.checked
        PropertyChanges {
            control.trackColor: Theme.tintColor
            control.knobColor: Theme.surfaceColor
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
            wrapMode: Text.Wrap
            text: control.title
        }
        Rectangle {
            Layout.rightMargin: Theme.spacing
            implicitWidth: 52
            implicitHeight: 32
            radius: height / 2
            color: control.trackColor
            border.width: 2
            border.color: control.checked ? Theme.tintColor : Theme.controlColor
            Rectangle {
                x: control.knobX
                anchors.verticalCenter: parent.verticalCenter
                width: control.checked ? 26 : 24
                height: width
                radius: width / 2
                color: control.knobColor
            }
        }
    }
}
