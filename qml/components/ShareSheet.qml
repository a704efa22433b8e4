import QtQuick
import Veltor

// The share sheet: the point as text to copy, or in a maps application. It only shares; the
// other tools are in the menu.
ActionSheet {
    id: sheet

    required property MapPanelController panel

    //: Button that opens the share sheet
    //% "Share"
    accessibilityLabel: qsTrId("sharesheet.title")

    ActionRow {
        glyph: "copy"
        //: Action to copy latitude and longitude-formatted string
        //% "Copy Latitude and Longitude"
        title: qsTrId("sharesheet.copy-latitude-longitude")
        onClicked: {
            sheet.panel.copyLatitudeLongitude()
            sheet.close()
        }
    }
    ActionRow {
        glyph: "copy"
        //: Action to copy veltor-formatted string
        //% "Copy Locator"
        title: qsTrId("sharesheet.copy-veltor")
        onClicked: {
            sheet.panel.copyVeltor()
            sheet.close()
        }
    }
    ActionRow {
        glyph: "map"
        //: Action to show a location in the Maps app
        //% "Show in Maps"
        title: qsTrId("sharesheet.show-in-maps")
        onClicked: {
            sheet.panel.showInMaps()
            sheet.close()
        }
    }
}
