import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts

ApplicationWindow {
    id: root

    required property QtObject coordinatePanel
    required property QtObject toolbar
    required property QtObject trackingSystem
    required property QtObject settingsStore

    width: 390
    height: 844
    visible: true
    title: "Veltor"
    color: "#10161c"

    readonly property color textColor: "#f2f5f7"
    readonly property color captionColor: "#8aa0b2"
    readonly property color accentColor: "#ffb020"

    // Dark surfaces everywhere, dialogs included, to keep night vision.
    palette.window: "#18212a"
    palette.windowText: textColor
    palette.base: "#24313d"
    palette.text: textColor
    palette.button: "#24313d"
    palette.buttonText: textColor
    palette.highlight: accentColor

    header: ToolBar {
        implicitHeight: 52
        background: Rectangle { color: "#18212a" }
        RowLayout {
            anchors.fill: parent
            anchors.leftMargin: 16
            anchors.rightMargin: 16
            Label {
                text: "Veltor"
                color: root.textColor
                font.pixelSize: 20
                font.weight: Font.DemiBold
                Layout.fillWidth: true
            }
            Label {
                text: root.toolbar.accuracyText
                opacity: root.toolbar.accuracyOpacity
                color: root.accentColor
                font.pixelSize: 18
                Accessible.name: text
            }
        }
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 24
        spacing: 14

        Rectangle {
            id: banner
            property string message: ""
            visible: message.length > 0
            Layout.fillWidth: true
            implicitHeight: bannerText.implicitHeight + 20
            radius: 6
            color: "#5a2a1a"
            Label {
                id: bannerText
                anchors.fill: parent
                anchors.margins: 10
                text: banner.message
                color: root.textColor
                wrapMode: Text.Wrap
            }
            Connections {
                target: root.settingsStore
                function onStoreFailed(message) { banner.message = message }
            }
        }

        Item { Layout.fillHeight: true }

        Repeater {
            model: [
                { caption: "LATITUDE", text: root.coordinatePanel.latitudeText,
                  spoken: root.coordinatePanel.latitudeAccessibilityLabel },
                { caption: "LONGITUDE", text: root.coordinatePanel.longitudeText,
                  spoken: root.coordinatePanel.longitudeAccessibilityLabel },
                { caption: "LOCATOR", text: root.coordinatePanel.veltorText,
                  spoken: root.coordinatePanel.veltorAccessibilityLabel }
            ]
            delegate: ColumnLayout {
                required property var modelData
                Layout.fillWidth: true
                spacing: 2
                Label {
                    text: modelData.caption
                    color: root.captionColor
                    font.pixelSize: 13
                    font.letterSpacing: 1.5
                }
                Label {
                    text: modelData.text
                    color: root.textColor
                    font.pixelSize: 34
                    font.weight: Font.Medium
                    Accessible.name: modelData.spoken
                }
            }
        }

        Item { Layout.fillHeight: true }

        // Large enough to hit with gloves.
        Button {
            id: trackButton
            Layout.fillWidth: true
            implicitHeight: 64
            text: root.trackingSystem.tracking ? "Stop tracking" : "Track my position"
            Accessible.name: text
            onClicked: root.trackingSystem.tracking ? root.trackingSystem.endTracking()
                                                    : root.trackingSystem.beginTracking()
            contentItem: Label {
                text: trackButton.text
                color: root.trackingSystem.tracking ? "#10161c" : root.textColor
                font.pixelSize: 20
                font.weight: Font.DemiBold
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
            }
            background: Rectangle {
                radius: 10
                color: root.trackingSystem.tracking ? root.accentColor : "#24313d"
                border.color: root.accentColor
                border.width: 2
            }
        }
    }

    Dialog {
        id: alert
        property string dismissText: "OK"
        anchors.centerIn: parent
        width: Math.min(parent.width - 48, 360)
        modal: true
        title: ""
        background: Rectangle {
            color: "#18212a"
            radius: 10
            border.color: root.accentColor
        }
        Label {
            id: alertMessage
            width: parent.width
            wrapMode: Text.Wrap
            color: root.textColor
        }
        footer: DialogButtonBox {
            background: Item {}
            Button {
                text: alert.dismissText
                implicitHeight: 52
                implicitWidth: 96
                DialogButtonBox.buttonRole: DialogButtonBox.AcceptRole
            }
        }
        Connections {
            target: root.trackingSystem
            function onAlertRequested(title, message, dismissButton) {
                alert.title = title
                alertMessage.text = message
                alert.dismissText = dismissButton
                alert.open()
            }
        }
    }
}
