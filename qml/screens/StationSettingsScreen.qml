import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Veltor

// Where the GPS comes from, and the radio programs that get the live grid.
FocusScope {
    id: page

    signal backRequested()

    focus: true
    Keys.onEscapePressed: page.backRequested()
    Keys.onBackPressed: page.backRequested()

    StationSettingsViewController {
        id: controller
        onBackRequested: page.backRequested()
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0
        RowLayout {
            Layout.fillWidth: true
            UnderlineButton {
                title: controller.backTitle
                font: Theme.body1Font
                onClicked: controller.back()
            }
            Body2Label {
                Layout.fillWidth: true
                text: controller.title
                horizontalAlignment: Text.AlignHCenter
            }
            Item {
                implicitWidth: Theme.minimumTouchSize
            }
        }
        Flickable {
            Layout.fillWidth: true
            Layout.fillHeight: true
            contentHeight: rows.implicitHeight
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}

            ColumnLayout {
                id: rows
                width: parent.width
                spacing: Theme.spacing / 2
                CaptionLabel {
                    Layout.leftMargin: Theme.spacing
                    Layout.topMargin: Theme.spacing
                    text: controller.gpsSourceTitle
                }
                ChoiceRow {
                    Layout.fillWidth: true
                    text: controller.systemSourceTitle
                    accessibilityLabel: controller.systemSourceTitle
                    checked: !controller.usesGpsd
                    onClicked: controller.useSystemSource()
                }
                ChoiceRow {
                    Layout.fillWidth: true
                    text: controller.gpsdTitle
                    accessibilityLabel: controller.gpsdTitle
                    checked: controller.usesGpsd
                    onClicked: controller.useGpsd()
                }
                SettingsTextField {
                    Layout.fillWidth: true
                    value: controller.gpsdAddress
                    placeholder: controller.addressTitle
                    error: controller.gpsdAddressError
                    accessibilityLabel: controller.gpsdAddressAccessibilityLabel
                    onSubmitted: text => controller.setGpsdAddress(text)
                }
                CaptionLabel {
                    Layout.leftMargin: Theme.spacing
                    Layout.topMargin: Theme.spacing
                    //: Heading of the choice of how long tracking waits for a receiver without a fix
                    //% "Wait for a Fix"
                    text: qsTrId("station.fix-wait")
                }
                ChoiceRow {
                    Layout.fillWidth: true
                    //: How long tracking waits for a fix: five minutes
                    //% "5 Minutes"
                    text: qsTrId("station.fix-wait.5min")
                    accessibilityLabel: text
                    checked: controller.fixWait === 0
                    onClicked: controller.setFixWait(0)
                }
                ChoiceRow {
                    Layout.fillWidth: true
                    //: How long tracking waits for a fix: a quarter of an hour
                    //% "15 Minutes"
                    text: qsTrId("station.fix-wait.15min")
                    accessibilityLabel: text
                    checked: controller.fixWait === 1
                    onClicked: controller.setFixWait(1)
                }
                ChoiceRow {
                    Layout.fillWidth: true
                    //: How long tracking waits for a fix: an hour
                    //% "1 Hour"
                    text: qsTrId("station.fix-wait.1h")
                    accessibilityLabel: text
                    checked: controller.fixWait === 2
                    onClicked: controller.setFixWait(2)
                }
                ChoiceRow {
                    Layout.fillWidth: true
                    //: Tracking waits for a fix for as long as the receiver talks
                    //% "As Long as It Takes"
                    text: qsTrId("station.fix-wait.unlimited")
                    accessibilityLabel: text
                    checked: controller.fixWait === 3
                    onClicked: controller.setFixWait(3)
                }
                SwitchRow {
                    Layout.fillWidth: true
                    Layout.topMargin: Theme.spacing
                    title: controller.wsjtxTitle
                    checked: controller.sendToWsjtx
                    onClicked: controller.toggleWsjtx()
                }
                SettingsTextField {
                    Layout.fillWidth: true
                    value: controller.wsjtxAddress
                    placeholder: controller.addressTitle
                    error: controller.wsjtxAddressError
                    accessibilityLabel: controller.wsjtxAddressAccessibilityLabel
                    onSubmitted: text => controller.setWsjtxAddress(text)
                }
                SwitchRow {
                    Layout.fillWidth: true
                    Layout.topMargin: Theme.spacing
                    title: controller.js8CallTitle
                    checked: controller.sendToJs8Call
                    onClicked: controller.toggleJs8Call()
                }
                SettingsTextField {
                    Layout.fillWidth: true
                    value: controller.js8CallAddress
                    placeholder: controller.addressTitle
                    error: controller.js8CallAddressError
                    accessibilityLabel: controller.js8CallAddressAccessibilityLabel
                    onSubmitted: text => controller.setJs8CallAddress(text)
                }
                CaptionLabel {
                    Layout.fillWidth: true
                    Layout.margins: Theme.spacing
                    text: controller.liveOnlyNote
                    wrapMode: Text.Wrap
                }
            }
        }
    }
}
