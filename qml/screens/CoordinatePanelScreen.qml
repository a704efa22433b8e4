import QtQuick
import QtQuick.Layouts
import Veltor

// The read-outs of the current point: latitude and longitude side by side, the locator large
// beneath. Each opens the keypad that edits it.
Rectangle {
    id: screen

    property alias controller: panel

    color: Theme.windowColor
    implicitHeight: layout.implicitHeight + 2 * Theme.spacing
    implicitWidth: layout.implicitWidth + 2 * Theme.spacing

    CoordinatePanelViewController {
        id: panel
    }

    GridLayout {
        id: layout
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.spacing
        columns: 2
        columnSpacing: Theme.spacing
        rowSpacing: 0

        CaptionLabel {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            Layout.minimumWidth: 0
            //: Caption over the latitude read-out
            //% "Latitude"
            text: qsTrId("panel.latitude.caption")
            elide: Text.ElideRight
        }
        CaptionLabel {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            Layout.minimumWidth: 0
            //: Caption over the longitude read-out
            //% "Longitude"
            text: qsTrId("panel.longitude.caption")
            elide: Text.ElideRight
        }
        // Half the width each, however long the texts: they shorten rather than push out.
        UnderlineButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            Layout.minimumWidth: 0
            title: panel.latitudeText
            accessibilityLabel: panel.latitudeAccessibilityLabel
            font: Theme.readoutFont
            textAlignment: Text.AlignLeft
            onClicked: panel.showLatitudeKeypad()
        }
        UnderlineButton {
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            Layout.minimumWidth: 0
            title: panel.longitudeText
            accessibilityLabel: panel.longitudeAccessibilityLabel
            font: Theme.readoutFont
            textAlignment: Text.AlignLeft
            onClicked: panel.showLongitudeKeypad()
        }
        CaptionLabel {
            Layout.columnSpan: 2
            Layout.fillWidth: true
            Layout.minimumWidth: 0
            //: Caption over the grid locator read-out
            //% "Locator"
            text: qsTrId("panel.veltor.caption")
            elide: Text.ElideRight
        }
        TitleButton {
            Layout.columnSpan: 2
            Layout.fillWidth: true
            Layout.minimumWidth: 0
            title: panel.veltorText
            accessibilityLabel: panel.veltorAccessibilityLabel
            textAlignment: Text.AlignLeft
            onClicked: panel.showVeltorKeypad()
        }
        GridPositionView {
            Layout.columnSpan: 2
            Layout.fillWidth: true
            Layout.minimumWidth: 0
        }
        TargetView {
            Layout.columnSpan: 2
            Layout.fillWidth: true
            Layout.minimumWidth: 0
        }
    }
}
