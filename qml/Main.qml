import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Veltor

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
        spacing: 0

        Rectangle {
            id: banner
            property string message: ""
            visible: message.length > 0
            Layout.fillWidth: true
            implicitHeight: bannerText.implicitHeight + 20
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

        // The read-out: latitude and longitude side by side, the locator large beneath.
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: readout.implicitHeight + 24
            color: root.color
            GridLayout {
                id: readout
                anchors.fill: parent
                anchors.margins: 12
                anchors.leftMargin: 16
                anchors.rightMargin: 16
                columns: 2
                columnSpacing: 16
                rowSpacing: 2
                Repeater {
                    model: [
                        { caption: "LATITUDE", text: root.coordinatePanel.latitudeText,
                          spoken: root.coordinatePanel.latitudeAccessibilityLabel, wide: false },
                        { caption: "LONGITUDE", text: root.coordinatePanel.longitudeText,
                          spoken: root.coordinatePanel.longitudeAccessibilityLabel, wide: false },
                        { caption: "LOCATOR", text: root.coordinatePanel.veltorText,
                          spoken: root.coordinatePanel.veltorAccessibilityLabel, wide: true }
                    ]
                    delegate: ColumnLayout {
                        required property var modelData
                        Layout.fillWidth: true
                        Layout.columnSpan: modelData.wide ? 2 : 1
                        Layout.topMargin: modelData.wide ? 8 : 0
                        spacing: 0
                        Label {
                            text: modelData.caption
                            color: root.captionColor
                            font.pixelSize: 12
                            font.letterSpacing: 1.5
                        }
                        Label {
                            Layout.fillWidth: true
                            text: modelData.text
                            color: modelData.wide ? root.accentColor : root.textColor
                            font.pixelSize: modelData.wide ? 34 : 21
                            font.weight: Font.Medium
                            fontSizeMode: Text.HorizontalFit
                            minimumPixelSize: 12
                            Accessible.name: modelData.spoken
                        }
                    }
                }
            }
        }

        MapView {
            id: map
            objectName: "map"
            Layout.fillWidth: true
            Layout.fillHeight: true

            // Gloved fingers: big round buttons for zoom.
            Column {
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                anchors.rightMargin: 12
                spacing: 12
                Repeater {
                    model: [ { label: "+", name: "Zoom in" }, { label: "\u2212", name: "Zoom out" } ]
                    delegate: RoundButton {
                        required property var modelData
                        required property int index
                        width: 56
                        height: 56
                        text: modelData.label
                        font.pixelSize: 28
                        Accessible.name: modelData.name
                        onClicked: index === 0 ? map.zoomIn() : map.zoomOut()
                        background: Rectangle {
                            radius: width / 2
                            color: "#e6ffffff"
                            border.color: "#5c6b78"
                        }
                        contentItem: Label {
                            text: parent.text
                            color: "#18212a"
                            font: parent.font
                            horizontalAlignment: Text.AlignHCenter
                            verticalAlignment: Text.AlignVCenter
                        }
                    }
                }
            }

            Label {
                anchors.left: parent.left
                anchors.bottom: trackButton.top
                anchors.margins: 6
                visible: text.length > 0
                text: map.attribution
                color: "#303a44"
                font.pixelSize: 11
                background: Rectangle { color: "#b3ffffff"; radius: 3 }
                padding: 3
            }

            // Large enough to hit with gloves.
            Button {
                id: trackButton
                anchors.left: parent.left
                anchors.right: parent.right
                anchors.bottom: parent.bottom
                anchors.margins: 14
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
                    color: root.trackingSystem.tracking ? root.accentColor : "#e618212a"
                    border.color: root.accentColor
                    border.width: 2
                }
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
