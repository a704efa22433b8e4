import QtQuick
import QtQuick.Layouts
import Veltor

// The read-outs of the current point: latitude and longitude side by side where both fit whole,
// else each on its own line with its caption beside it; the locator large beneath; each in the
// largest font in which its whole text fits, and each opening the keypad that edits it. Under
// them, the field tools, folded to one line where the map needs the room.
Rectangle {
    id: screen

    property alias controller: panel
    // Where the root lets the panel take its room from the map (RootViewController).
    property bool showsLocator: true
    property bool toolsFolded: false
    property bool toolsFoldable: true
    // A column wide enough for two: the field tools to the right of the read-outs.
    property bool toolsBeside: false
    signal toolsToggled()

    // The heights of the parts, whatever is shown now, for the root to share the window by.
    readonly property real readoutsHeight: 2 * Theme.spacing
                                           + (panel.readoutsStacked
                                              ? latitude.Layout.minimumHeight + longitude.Layout.minimumHeight
                                              : latitudeCaption.implicitHeight + latitude.Layout.minimumHeight)
    readonly property real locatorHeight: panel.readoutsStacked
                                          ? locator.Layout.minimumHeight
                                          : locatorCaption.implicitHeight + locator.Layout.minimumHeight
    readonly property real foldedToolsHeight: tools.foldedHeight
    readonly property real toolsHeight: tools.unfoldedHeight

    color: Theme.windowColor
    implicitHeight: layout.implicitHeight + 2 * Theme.spacing
    implicitWidth: layout.implicitWidth + 2 * Theme.spacing

    CoordinatePanelViewController {
        id: panel
        availableWidth: screen.toolsBeside ? (layout.width - Theme.spacing) / 2 : layout.width
        captionWidth: Math.max(latitudeCaption.implicitWidth, longitudeCaption.implicitWidth,
                               locatorCaption.implicitWidth)
    }

    GridLayout {
        id: layout
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.spacing
        // Side by side the read-outs take rows 0 to 3, stacked rows 4 to 6: no item ever moves
        // into a cell another has not left yet.
        columns: screen.toolsBeside ? 3 : 2
        columnSpacing: Theme.spacing
        rowSpacing: 0

        SecondaryLabel {
            id: latitudeCaption
            Layout.row: panel.readoutsStacked ? 4 : 0
            Layout.column: 0
            Layout.fillWidth: !panel.readoutsStacked
            Layout.preferredWidth: panel.readoutsStacked ? panel.captionWidth : 1
            Layout.alignment: Qt.AlignLeft | Qt.AlignVCenter
            wrapMode: Text.NoWrap
            //: Caption over the latitude read-out
            //% "Latitude"
            text: qsTrId("panel.latitude.caption")
        }
        SecondaryLabel {
            id: longitudeCaption
            Layout.row: panel.readoutsStacked ? 5 : 0
            Layout.column: panel.readoutsStacked ? 0 : 1
            Layout.fillWidth: !panel.readoutsStacked
            Layout.preferredWidth: panel.readoutsStacked ? panel.captionWidth : 1
            Layout.alignment: Qt.AlignLeft | Qt.AlignVCenter
            wrapMode: Text.NoWrap
            //: Caption over the longitude read-out
            //% "Longitude"
            text: qsTrId("panel.longitude.caption")
        }
        UnderlineButton {
            id: latitude
            Layout.row: panel.readoutsStacked ? 4 : 1
            Layout.column: panel.readoutsStacked ? 1 : 0
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            title: panel.latitudeText
            accessibilityLabel: panel.latitudeAccessibilityLabel
            font: panel.readoutFont
            textAlignment: Text.AlignLeft
            onClicked: panel.showLatitudeKeypad()
        }
        UnderlineButton {
            id: longitude
            Layout.row: panel.readoutsStacked ? 5 : 1
            Layout.column: 1
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            title: panel.longitudeText
            accessibilityLabel: panel.longitudeAccessibilityLabel
            font: panel.readoutFont
            textAlignment: Text.AlignLeft
            onClicked: panel.showLongitudeKeypad()
        }
        SecondaryLabel {
            id: locatorCaption
            visible: screen.showsLocator
            Layout.row: panel.readoutsStacked ? 6 : 2
            Layout.column: 0
            Layout.columnSpan: panel.readoutsStacked ? 1 : 2
            Layout.fillWidth: !panel.readoutsStacked
            Layout.preferredWidth: panel.readoutsStacked ? panel.captionWidth : -1
            Layout.alignment: Qt.AlignLeft | Qt.AlignVCenter
            wrapMode: Text.NoWrap
            //: Caption over the grid locator read-out
            //% "Locator"
            text: qsTrId("panel.veltor.caption")
        }
        TitleButton {
            id: locator
            visible: screen.showsLocator
            Layout.row: panel.readoutsStacked ? 6 : 3
            Layout.column: panel.readoutsStacked ? 1 : 0
            Layout.columnSpan: panel.readoutsStacked ? 1 : 2
            Layout.fillWidth: true
            title: panel.veltorText
            accessibilityLabel: panel.veltorAccessibilityLabel
            font: panel.veltorFont
            textAlignment: Text.AlignLeft
            onClicked: panel.showVeltorKeypad()
        }
        // Beside taller tools, the read-outs keep to the top and this takes the rest.
        Item {
            visible: screen.toolsBeside
            Layout.row: 7
            Layout.column: 0
            Layout.fillHeight: true
        }
        FieldToolsView {
            id: tools
            // Beside: from the first row the read-outs use to the filler under them.
            Layout.row: screen.toolsBeside && panel.readoutsStacked ? 4 : screen.toolsBeside ? 0 : 7
            Layout.column: screen.toolsBeside ? 2 : 0
            Layout.columnSpan: screen.toolsBeside ? 1 : 2
            Layout.rowSpan: screen.toolsBeside ? 8 - Layout.row : 1
            Layout.alignment: Qt.AlignTop
            Layout.fillWidth: !screen.toolsBeside
            Layout.preferredWidth: screen.toolsBeside ? (layout.width - Theme.spacing) / 2 : -1
            Layout.minimumWidth: 0
            folded: screen.toolsFolded
            foldable: screen.toolsFoldable
            onToggled: screen.toolsToggled()
        }
    }
}
