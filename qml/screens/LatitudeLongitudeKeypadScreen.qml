import QtQuick
import QtQuick.Layouts
import Veltor

// The latitude/longitude keypad: what is typed above, Delete and Done, then the digits laid
// out like a calculator with the hemisphere, degree and minute keys in the last column.
FocusScope {
    id: screen

    property alias style: controller.style
    readonly property real hairline: Theme.hairline(Screen.devicePixelRatio)

    focus: true

    signal dismissRequested()

    LatitudeLongitudeKeypadViewController {
        id: controller
        onDismissRequested: screen.dismissRequested()
        onAccessibilityFocusRequested: output.forceActiveFocus()
    }

    Keys.onPressed: event => event.accepted = controller.handleKey(event.key, event.text)

    Rectangle {
        anchors.fill: parent
        color: Theme.keyFaceColor
    }
    // Pulled down, as the platform's sheets are, the keypad closes as Cancel does.
    DragHandler {
        target: null
        xAxis.enabled: false
        onActiveChanged: {
            if (!active && Theme.isDismissSwipe(centroid.scenePosition.y
                                                - centroid.scenePressPosition.y))
                controller.cancel()
        }
    }

    GridLayout {
        anchors.fill: parent
        flow: Theme.panelFlow(width, height)
        rows: 2
        columns: 2
        rowSpacing: 0
        columnSpacing: 0

        ColumnLayout {
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignVCenter
            spacing: 0

            KeypadHeader {
                Layout.fillWidth: true
                title: controller.title
                onCancelled: controller.cancel()
            }
            KeypadInputLabel {
                id: output
                Layout.fillWidth: true
                Layout.margins: Theme.spacing
                text: controller.outputText
                accessibilityLabel: controller.outputAccessibilityLabel
                focus: true
            }
            Rectangle {
                Layout.fillWidth: true
                implicitHeight: done.implicitHeight + screen.hairline
                color: Theme.dividerColor
                KeypadButton {
                    id: done
                    anchors.fill: parent
                    anchors.topMargin: screen.hairline
                    //: Done Button
                    //% "Done"
                    title: qsTrId("general.done")
                    alternateStyle: true
                    onClicked: controller.doneButtonTapped()
                }
            }
        }

        KeyGrid {
            Layout.fillWidth: true
            Layout.fillHeight: true
            keys: controller.keys
        }
    }
}
