import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Veltor

// Where the map comes from, with the path of a map file and the address of a tile server.
FocusScope {
    id: page

    signal backRequested()

    focus: true
    Keys.onEscapePressed: page.backRequested()
    Keys.onBackPressed: page.backRequested()

    MapSourceSettingsViewController {
        id: controller
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
                // Back is never squeezed by a long title: the title wraps instead.
                Layout.minimumWidth: implicitWidth
                onClicked: page.backRequested()
            }
            Body2Label {
                Layout.fillWidth: true
                //: Settings row and picker: where the map's tiles come from
                //% "Map source"
                text: qsTrId("settings.map")
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                topPadding: Theme.spacing / 2
                bottomPadding: Theme.spacing / 2
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
                spacing: Theme.hairline(Screen.devicePixelRatio)
                Repeater {
                    model: controller.choices
                    ChoiceRow {
                        required property FormatChoice modelData
                        Layout.fillWidth: true
                        text: modelData.text
                        accessibilityLabel: modelData.text
                        checked: modelData.checked
                        onClicked: modelData.select()
                    }
                }
                SettingsTextField {
                    Layout.fillWidth: true
                    Layout.topMargin: Theme.spacing
                    value: controller.mbtilesPath
                    //: Field for the path of a map file in the MBTiles format
                    //% "MBTiles file path"
                    placeholder: qsTrId("map-source.mbtiles-path")
                    error: controller.mbtilesError
                    note: controller.mbtilesNote
                    //: Field for the path of a map file in the MBTiles format
                    //% "MBTiles file path"
                    accessibilityLabel: qsTrId("map-source.mbtiles-path")
                    onSubmitted: text => controller.setMbtilesPath(text)
                }
                SettingsTextField {
                    Layout.fillWidth: true
                    Layout.topMargin: Theme.spacing
                    value: controller.customTemplate
                    //: Field for a tile server's address template; {z}, {x} and {y} stand as they are
                    //% "https://server/{z}/{x}/{y}.png"
                    placeholder: qsTrId("map-source.template")
                    error: controller.customTemplateError
                    //: Field for a tile server's address template; {z}, {x} and {y} stand as they are
                    //% "https://server/{z}/{x}/{y}.png"
                    accessibilityLabel: qsTrId("map-source.template")
                    onSubmitted: text => controller.setCustomTemplate(text)
                }
                SettingsTextField {
                    Layout.fillWidth: true
                    value: controller.customAttribution
                    //: Field for the credit a tile server asks to be shown on the map
                    //% "Credit shown on the map"
                    placeholder: qsTrId("map-source.attribution")
                    //: Field for the credit a tile server asks to be shown on the map
                    //% "Credit shown on the map"
                    accessibilityLabel: qsTrId("map-source.attribution")
                    onSubmitted: text => controller.setCustomAttribution(text)
                }
                SecondaryLabel {
                    Layout.fillWidth: true
                    Layout.margins: Theme.spacing
                    text: controller.note
                    wrapMode: Text.Wrap
                }
            }
        }
    }
}
