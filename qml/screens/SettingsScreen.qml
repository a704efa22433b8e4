import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Veltor

// The settings, with their pickers pushed on a stack of their own: Done (or Escape) closes
// the whole sheet, Back (or Escape) leaves a picker.
FocusScope {
    id: screen

    readonly property list<Component> pickers: [veltorPicker, coordinatePicker, distancePicker,
        appearancePicker, crossingPicker, stationPicker,
        mapSourcePicker]

    // A picker to open at once, as the menu's Station and Map Source do; -1 for none.
    property int initialPicker: -1

    signal dismissRequested()

    focus: true
    Component.onCompleted: if (initialPicker >= 0) controller.showPicker(initialPicker)

    SettingsViewController {
        id: controller
        onDismissRequested: screen.dismissRequested()
        onPickerRequested: picker => stack.push(screen.pickers[picker])
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.surfaceColor
    }

    StackView {
        id: stack
        anchors.fill: parent
        focus: true
        initialItem: settingsPage
    }
    // Every picker asks to go back the same way.
    Connections {
        target: stack.currentItem
        ignoreUnknownSignals: true
        function onBackRequested() { stack.pop() }
    }

    Component {
        id: veltorPicker
        VeltorFormatPickerScreen {}
    }
    Component {
        id: coordinatePicker
        CoordinateFormatPickerScreen {}
    }
    Component {
        id: distancePicker
        DistanceFormatPickerScreen {}
    }
    Component {
        id: appearancePicker
        AppearancePickerScreen {}
    }
    Component {
        id: crossingPicker
        CrossingAlertPickerScreen {}
    }
    Component {
        id: stationPicker
        StationSettingsScreen {}
    }
    Component {
        id: mapSourcePicker
        MapSourcePickerScreen {}
    }

    FocusScope {
        id: settingsPage
        focus: true
        Keys.onEscapePressed: controller.dismiss()

        ColumnLayout {
            anchors.fill: parent
            spacing: 0
            RowLayout {
                Layout.fillWidth: true
                Item {
                    implicitWidth: Theme.minimumTouchSize
                }
                Body2Label {
                    Layout.fillWidth: true
                    //: Title of the settings screen and spoken name of the button that opens it
                    //% "Settings"
                    text: qsTrId("settings.title")
                    horizontalAlignment: Text.AlignHCenter
                }
                UnderlineButton {
                    //: Done Button
                    //% "Done"
                    title: qsTrId("general.done")
                    font: Theme.body2Font
                    onClicked: controller.dismiss()
                }
            }
            // Rows scroll on a short screen or a large font.
            Flickable {
                Layout.fillWidth: true
                Layout.fillHeight: true
                contentHeight: rowsBackground.implicitHeight
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                ScrollBar.vertical: ScrollBar {}
                Rectangle {
                    id: rowsBackground
                    width: parent.width
                    implicitHeight: rows.implicitHeight
                    color: Theme.dividerColor
                    Column {
                        id: rows
                        width: parent.width
                        spacing: Theme.hairline(Screen.devicePixelRatio)
                        SettingsRow {
                            width: rows.width
                            //: Row and picker title for the locator precision
                            //% "Locator precision"
                            title: qsTrId("settings.veltor-format")
                            detail: controller.veltorFormatDetail
                            detailAccessibilityLabel: controller.veltorFormatAccessibilityLabel
                            onClicked: controller.showPicker(SettingsViewController.VeltorFormatPicker)
                        }
                        SettingsRow {
                            width: rows.width
                            //: Row and picker title for the latitude and longitude notation
                            //% "Coordinates"
                            title: qsTrId("settings.coordinate-format")
                            detail: controller.coordinateFormatDetail
                            detailAccessibilityLabel: controller.coordinateFormatAccessibilityLabel
                            onClicked: controller.showPicker(SettingsViewController.CoordinateFormatPicker)
                        }
                        SettingsRow {
                            width: rows.width
                            //: Row and picker title for the units of every distance: accuracy, cell edges, target
                            //% "Distance units"
                            title: qsTrId("settings.distance-format")
                            detail: controller.distanceFormatDetail
                            detailAccessibilityLabel: controller.distanceFormatDetail
                            onClicked: controller.showPicker(SettingsViewController.DistanceFormatPicker)
                        }
                        SwitchRow {
                            width: rows.width
                            //: Row of the switch that shows or hides the locator grid on the map
                            //% "Show grid"
                            title: qsTrId("settings.show-grid")
                            checked: controller.showGrid
                            onClicked: controller.toggleShowGrid()
                        }
                        SettingsRow {
                            width: rows.width
                            //: Settings row and picker: where the map's tiles come from
                            //% "Map source"
                            title: qsTrId("settings.map")
                            detail: controller.mapSourceDetail
                            detailAccessibilityLabel: controller.mapSourceDetail
                            onClicked: controller.showPicker(SettingsViewController.MapSourcePicker)
                        }
                        SettingsRow {
                            width: rows.width
                            //: Row and picker title for the appearance of the screens
                            //% "Appearance"
                            title: qsTrId("settings.appearance")
                            detail: controller.appearanceDetail
                            detailAccessibilityLabel: controller.appearanceDetail
                            onClicked: controller.showPicker(SettingsViewController.AppearancePicker)
                        }
                        SwitchRow {
                            width: rows.width
                            //: Row of the switch that shows or hides, under the read-outs, how far the edges of the
                            //: current locator cell are
                            //% "Grid position"
                            title: qsTrId("settings.grid-position")
                            checked: controller.showGridPosition
                            onClicked: controller.toggleShowGridPosition()
                        }
                        SettingsRow {
                            width: rows.width
                            //: Row and picker title: at which locator precision entering another cell is announced
                            //% "Crossing alerts"
                            title: qsTrId("settings.crossing-alert")
                            detail: controller.crossingAlertDetail
                            detailAccessibilityLabel: controller.crossingAlertDetail
                            onClicked: controller.showPicker(SettingsViewController.CrossingAlertPicker)
                        }
                        SwitchRow {
                            width: rows.width
                            //: Row of the switch that has a crossing alert also spoken ("Entering JN58")
                            //% "Speak crossings"
                            title: qsTrId("settings.speak-crossings")
                            checked: controller.speakCrossings
                            onClicked: controller.toggleSpeakCrossings()
                        }
                        SettingsRow {
                            width: rows.width
                            //: Settings row and screen: where the GPS comes from and which radio programs get the grid
                            //% "Station"
                            title: qsTrId("station.title")
                            detail: controller.stationDetail
                            detailAccessibilityLabel: controller.stationDetail
                            onClicked: controller.showPicker(SettingsViewController.StationPicker)
                        }
                    }
                }
            }
        }
    }
}
