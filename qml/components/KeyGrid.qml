import QtQuick
import QtQuick.Layouts
import Veltor

// A keypad's keys, four to a row at the places their keypad gives, with hairline dividers.
Rectangle {
    id: grid

    // The keypad's list of KeypadKey objects.
    property alias keys: repeater.model
    readonly property real hairline: Theme.hairline(Screen.devicePixelRatio)

    implicitHeight: layout.implicitHeight
    implicitWidth: layout.implicitWidth
    color: Theme.dividerColor

    GridLayout {
        id: layout
        anchors.fill: parent
        anchors.topMargin: grid.hairline
        columns: 4
        rowSpacing: grid.hairline
        columnSpacing: grid.hairline
        Repeater {
            id: repeater
            KeypadButton {
                required property KeypadKey modelData
                Layout.row: modelData.row
                Layout.column: modelData.column
                Layout.fillWidth: true
                Layout.fillHeight: true
                title: modelData.title
                accessibilityTitle: modelData.accessibilityTitle
                maskImage: modelData.maskImage
                enabled: modelData.enabled
                onClicked: modelData.press()
            }
        }
    }
}
