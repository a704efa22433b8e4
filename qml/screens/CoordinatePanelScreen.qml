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
        anchors.fill: parent
        anchors.margins: Theme.spacing
        columns: 2
        columnSpacing: Theme.spacing
        rowSpacing: 0

        CaptionLabel {
            text: panel.latitudeCaption
        }
        CaptionLabel {
            text: panel.longitudeCaption
        }
        UnderlineButton {
            Layout.fillWidth: true
            title: panel.latitudeText
            accessibilityLabel: panel.latitudeAccessibilityLabel
            font: Theme.readoutFont
            textAlignment: Text.AlignLeft
            onClicked: panel.showLatitudeKeypad()
        }
        UnderlineButton {
            Layout.fillWidth: true
            title: panel.longitudeText
            accessibilityLabel: panel.longitudeAccessibilityLabel
            font: Theme.readoutFont
            textAlignment: Text.AlignLeft
            onClicked: panel.showLongitudeKeypad()
        }
        CaptionLabel {
            Layout.columnSpan: 2
            text: panel.veltorCaption
        }
        TitleButton {
            Layout.columnSpan: 2
            Layout.fillWidth: true
            title: panel.veltorText
            accessibilityLabel: panel.veltorAccessibilityLabel
            textAlignment: Text.AlignLeft
            onClicked: panel.showVeltorKeypad()
        }
    }
}
