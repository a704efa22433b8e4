import QtQuick
import QtQuick.Layouts
import Veltor

// The locator keypad: what is typed above, Delete and Done, and the 24 character keys whose
// labels follow the position being typed.
FocusScope {
    id: screen

    readonly property real hairline: Theme.hairline(Screen.devicePixelRatio)
    // Types the target instead of the point.
    property bool targetMode

    focus: true

    signal dismissRequested()

    VeltorKeypadViewController {
        id: controller
        targetMode: screen.targetMode
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
                implicitHeight: actions.implicitHeight + screen.hairline
                color: Theme.dividerColor
                RowLayout {
                    id: actions
                    anchors.fill: parent
                    anchors.topMargin: screen.hairline
                    spacing: screen.hairline
                    KeypadButton {
                        Layout.fillWidth: true
                        title: ""
                        maskImage: "delete"
                        //: Spoken name of the key that deletes the last character typed
                        //% "delete"
                        accessibilityTitle: qsTrId("keypad.delete")
                        onClicked: controller.deleteButtonTapped()
                    }
                    KeypadButton {
                        Layout.fillWidth: true
                        Layout.preferredWidth: 3 * Theme.minimumTouchSize
                        //: Done Button
                        //% "Done"
                        title: qsTrId("general.done")
                        alternateStyle: true
                        onClicked: controller.doneButtonTapped()
                    }
                }
            }
        }

        KeyGrid {
            Layout.fillWidth: true
            Layout.fillHeight: true
            keys: controller.characterKeys
        }
    }
}
