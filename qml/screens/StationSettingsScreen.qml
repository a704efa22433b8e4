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
                //: Button that goes back from a picker to the settings
                //% "Back"
                title: qsTrId("general.back")
                font: Theme.body1Font
                onClicked: controller.back()
            }
            Body2Label {
                Layout.fillWidth: true
                //: Settings row and screen: where the GPS comes from and which radio programs get the grid
                //% "Station"
                text: qsTrId("station.title")
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
                SecondaryLabel {
                    Layout.leftMargin: Theme.spacing
                    Layout.topMargin: Theme.spacing
                    //: Heading of the choice of GPS source
                    //% "GPS Source"
                    text: qsTrId("station.gps-source")
                }
                ChoiceRow {
                    Layout.fillWidth: true
                    //: GPS source: the operating system's own positioning service
                    //% "System Positioning"
                    text: qsTrId("station.gps-source.system")
                    //: GPS source: the operating system's own positioning service
                    //% "System Positioning"
                    accessibilityLabel: qsTrId("station.gps-source.system")
                    checked: !controller.usesGpsd
                    onClicked: controller.useSystemSource()
                }
                ChoiceRow {
                    Layout.fillWidth: true
                    //: GPS source: the gpsd daemon (a program name, usually left as it is)
                    //% "gpsd"
                    text: qsTrId("station.gps-source.gpsd")
                    //: GPS source: the gpsd daemon (a program name, usually left as it is)
                    //% "gpsd"
                    accessibilityLabel: qsTrId("station.gps-source.gpsd")
                    checked: controller.usesGpsd
                    onClicked: controller.useGpsd()
                }
                SettingsTextField {
                    Layout.fillWidth: true
                    value: controller.gpsdAddress
                    //: Label and placeholder of a network address field
                    //% "Host:Port"
                    placeholder: qsTrId("station.address")
                    error: controller.gpsdAddressError
                    //: Spoken name of the gpsd address field
                    //% "gpsd address"
                    accessibilityLabel: qsTrId("station.gpsd-address-spoken")
                    onSubmitted: text => controller.setGpsdAddress(text)
                }
                SecondaryLabel {
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
                    checked: controller.fixWait === FixWait.FiveMinutes
                    onClicked: controller.setFixWait(FixWait.FiveMinutes)
                }
                ChoiceRow {
                    Layout.fillWidth: true
                    //: How long tracking waits for a fix: a quarter of an hour
                    //% "15 Minutes"
                    text: qsTrId("station.fix-wait.15min")
                    accessibilityLabel: text
                    checked: controller.fixWait === FixWait.FifteenMinutes
                    onClicked: controller.setFixWait(FixWait.FifteenMinutes)
                }
                ChoiceRow {
                    Layout.fillWidth: true
                    //: How long tracking waits for a fix: an hour
                    //% "1 Hour"
                    text: qsTrId("station.fix-wait.1h")
                    accessibilityLabel: text
                    checked: controller.fixWait === FixWait.OneHour
                    onClicked: controller.setFixWait(FixWait.OneHour)
                }
                ChoiceRow {
                    Layout.fillWidth: true
                    //: Tracking waits for a fix for as long as the receiver talks
                    //% "As Long as It Takes"
                    text: qsTrId("station.fix-wait.unlimited")
                    accessibilityLabel: text
                    checked: controller.fixWait === FixWait.Unlimited
                    onClicked: controller.setFixWait(FixWait.Unlimited)
                }
                SwitchRow {
                    Layout.fillWidth: true
                    Layout.topMargin: Theme.spacing
                    //: Switch: send the live 6-character locator to WSJT-X
                    //% "Send Grid to WSJT-X"
                    title: qsTrId("station.wsjtx")
                    checked: controller.sendToWsjtx
                    onClicked: controller.toggleWsjtx()
                }
                SettingsTextField {
                    Layout.fillWidth: true
                    value: controller.wsjtxAddress
                    //: Label and placeholder of a network address field
                    //% "Host:Port"
                    placeholder: qsTrId("station.address")
                    error: controller.wsjtxAddressError
                    note: controller.wsjtxStatus
                    noteIsWarning: controller.wsjtxFailed
                    //: Spoken name of the WSJT-X address field
                    //% "WSJT-X address"
                    accessibilityLabel: qsTrId("station.wsjtx-address-spoken")
                    onSubmitted: text => controller.setWsjtxAddress(text)
                }
                SwitchRow {
                    Layout.fillWidth: true
                    Layout.topMargin: Theme.spacing
                    //: Switch: send the live 6-character locator to JS8Call
                    //% "Send Grid to JS8Call"
                    title: qsTrId("station.js8call")
                    checked: controller.sendToJs8Call
                    onClicked: controller.toggleJs8Call()
                }
                SettingsTextField {
                    Layout.fillWidth: true
                    value: controller.js8CallAddress
                    //: Label and placeholder of a network address field
                    //% "Host:Port"
                    placeholder: qsTrId("station.address")
                    error: controller.js8CallAddressError
                    //: Spoken name of the JS8Call address field
                    //% "JS8Call address"
                    accessibilityLabel: qsTrId("station.js8call-address-spoken")
                    onSubmitted: text => controller.setJs8CallAddress(text)
                }
                SecondaryLabel {
                    Layout.fillWidth: true
                    Layout.margins: Theme.spacing
                    //: Under the switches: when the grid is sent
                    //% "The grid is sent only while tracking live, each time it changes."
                    text: qsTrId("station.live-only")
                    wrapMode: Text.Wrap
                }
            }
        }
    }
}
