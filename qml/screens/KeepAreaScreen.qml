import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Veltor

// Keeps an area of the online map for the field: which area, which zoom levels, what that takes,
// then the download with its progress.
FocusScope {
    id: page

    required property MapView map

    signal dismissRequested()

    focus: true
    Keys.onEscapePressed: controller.close()

    KeepAreaController {
        id: controller
        map: page.map
        onDismissRequested: page.dismissRequested()
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.surfaceColor
    }

    Flickable {
        anchors.fill: parent
        contentHeight: rows.implicitHeight + 2 * Theme.spacing
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {}

        ColumnLayout {
            id: rows
            x: Theme.spacing
            y: Theme.spacing
            width: parent.width - 2 * Theme.spacing
            spacing: Theme.spacing / 2

            Body2Label {
                Layout.fillWidth: true
                //: Title of the screen that keeps an area of the online map for use without a network,
                //: and of the share sheet's button that opens it
                //% "Keep Area Offline"
                text: qsTrId("keep-area.title")
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
            }
            ChoiceRow {
                Layout.fillWidth: true
                //: Keep the part of the map on the screen
                //% "Visible Area"
                text: qsTrId("keep-area.visible")
                accessibilityLabel: text
                checked: controller.area === KeepAreaController.VisibleArea
                enabled: !controller.running
                onClicked: controller.area = KeepAreaController.VisibleArea
            }
            ChoiceRow {
                Layout.fillWidth: true
                text: controller.nearAreaTitle
                accessibilityLabel: text
                checked: controller.area === KeepAreaController.NearArea
                enabled: !controller.running
                onClicked: controller.area = KeepAreaController.NearArea
            }
            ChoiceRow {
                Layout.fillWidth: true
                text: controller.wideAreaTitle
                accessibilityLabel: text
                checked: controller.area === KeepAreaController.WideArea
                enabled: !controller.running
                onClicked: controller.area = KeepAreaController.WideArea
            }
            Body1Label {
                Layout.fillWidth: true
                Layout.topMargin: Theme.spacing
                text: controller.zoomText
            }
            GridLayout {
                Layout.fillWidth: true
                columns: 3
                enabled: !controller.running
                SecondaryLabel {
                    //: The first zoom level kept
                    //% "First level"
                    text: qsTrId("keep-area.from")
                }
                StepperButton {
                    glyph: "minus"
                    accessibilityLabel: controller.stepLabel(true, -1)
                    onClicked: controller.stepMinZoom(-1)
                }
                StepperButton {
                    glyph: "plus"
                    accessibilityLabel: controller.stepLabel(true, 1)
                    onClicked: controller.stepMinZoom(1)
                }
                SecondaryLabel {
                    //: The last zoom level kept
                    //% "Last level"
                    text: qsTrId("keep-area.to")
                }
                StepperButton {
                    glyph: "minus"
                    accessibilityLabel: controller.stepLabel(false, -1)
                    onClicked: controller.stepMaxZoom(-1)
                }
                StepperButton {
                    glyph: "plus"
                    accessibilityLabel: controller.stepLabel(false, 1)
                    onClicked: controller.stepMaxZoom(1)
                }
            }
            Body1Label {
                Layout.fillWidth: true
                text: controller.planText
                visible: text.length > 0
            }
            SecondaryLabel {
                Layout.fillWidth: true
                text: controller.policyText
                visible: text.length > 0
                wrapMode: Text.Wrap
            }
            ProgressBar {
                Layout.fillWidth: true
                visible: controller.running || controller.progress > 0
                value: controller.progress
                Accessible.name: controller.progressText
            }
            Body1Label {
                Layout.fillWidth: true
                text: controller.progressText
                visible: text.length > 0
            }
            Body1Label {
                Layout.fillWidth: true
                text: controller.message
                visible: text.length > 0
                wrapMode: Text.Wrap
            }
            WideButton {
                Layout.fillWidth: true
                visible: !controller.running
                enabled: controller.canStart
                //: Button that starts the download
                //% "Keep Area"
                title: qsTrId("keep-area.start")
                accessibilityLabel: title
                onClicked: controller.start()
            }
            WideButton {
                Layout.fillWidth: true
                visible: controller.canResume
                //: Button that continues a download that was cut short
                //% "Resume Last Download"
                title: qsTrId("keep-area.resume")
                accessibilityLabel: title
                onClicked: controller.resume()
            }
            WideButton {
                Layout.fillWidth: true
                visible: controller.running
                //: Button that stops the download, keeping what arrived
                //% "Stop"
                title: qsTrId("keep-area.cancel")
                accessibilityLabel: title
                onClicked: controller.cancel()
            }
            WideButton {
                Layout.fillWidth: true
                visible: !controller.running
                //: Button that closes the screen
                //% "Close"
                title: qsTrId("keep-area.close")
                accessibilityLabel: title
                alternateStyle: true
                onClicked: controller.close()
            }
        }
    }
}
