import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts

ApplicationWindow {
    id: root

    required property QtObject coordinatePanel

    width: 390
    height: 844
    visible: true
    title: "Veltor"
    color: "#10161c"

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 24
        spacing: 12

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
                    color: "#8aa0b2"
                    font.pixelSize: 13
                    font.letterSpacing: 1.5
                }
                Label {
                    text: modelData.text
                    color: "#f2f5f7"
                    font.pixelSize: 34
                    font.weight: Font.Medium
                    Accessible.name: modelData.spoken
                }
            }
        }

        Item { Layout.fillHeight: true }
    }
}
