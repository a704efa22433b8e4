import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T
import Veltor

// The share sheet: copy the latitude and longitude, copy the locator, show the point in a maps
// application, make it the target, save a proof of it, or cancel. Along the bottom of a narrow window, under its button on a wide one.
Popup {
    id: sheet

    required property MapPanelController panel
    required property TargetController target
    required property ProofSnapshotController proof

    function present(anchor: Item) {
        const rect = Theme.actionSheetRect(Qt.size(parent.width, parent.height),
                                           anchor.mapToItem(parent, 0, 0, anchor.width, anchor.height),
                                           actions.implicitHeight + 2 * padding)
        x = rect.x
        y = rect.y
        width = rect.width
        open()
    }

    parent: T.Overlay.overlay
    modal: true
    focus: true
    padding: Theme.spacing
    T.Overlay.modal: Rectangle {
        color: Theme.scrimColor
    }
    background: Rectangle {
        color: Theme.surfaceColor
        border.color: Theme.dividerColor
        radius: 10
    }

    ColumnLayout {
        id: actions
        anchors.left: parent.left
        anchors.right: parent.right
        spacing: Theme.spacing / 2
        WideButton {
            Layout.fillWidth: true
            //: Action to copy latitude and longitude-formatted string
            //% "Copy Latitude and Longitude"
            title: qsTrId("sharesheet.copy-latitude-longitude")
            accessibilityLabel: title
            onClicked: {
                sheet.panel.copyLatitudeLongitude()
                sheet.close()
            }
        }
        WideButton {
            Layout.fillWidth: true
            //: Action to copy veltor-formatted string
            //% "Copy Locator"
            title: qsTrId("sharesheet.copy-veltor")
            accessibilityLabel: title
            onClicked: {
                sheet.panel.copyVeltor()
                sheet.close()
            }
        }
        WideButton {
            Layout.fillWidth: true
            //: Action to show a location in the Maps app
            //% "Show in Maps"
            title: qsTrId("sharesheet.show-in-maps")
            accessibilityLabel: title
            onClicked: {
                sheet.panel.showInMaps()
                sheet.close()
            }
        }
        WideButton {
            Layout.fillWidth: true
            //: Share sheet action: the current point becomes the target for distance and bearing
            //% "Set as Target"
            title: qsTrId("target.set")
            accessibilityLabel: title
            onClicked: {
                sheet.target.setCurrentPointAsTarget()
                sheet.close()
            }
        }
        WideButton {
            Layout.fillWidth: true
            //: Share sheet action: opens the locator keypad to type the target
            //% "Type Target Locator"
            title: qsTrId("target.type")
            accessibilityLabel: title
            onClicked: {
                sheet.close()
                sheet.target.typeTarget()
            }
        }
        WideButton {
            Layout.fillWidth: true
            //: Share sheet action: saves a picture of the window and a text file proving the position
            //% "Save Proof"
            title: qsTrId("proof.save")
            accessibilityLabel: title
            onClicked: {
                // Closed first, so the picture shows the screen and not the sheet.
                sheet.close()
                sheet.proof.save()
            }
        }
        WideButton {
            Layout.fillWidth: true
            //: Title of the screen that keeps an area of the online map for use without a network,
            //: and of the share sheet's button that opens it
            //% "Keep Area Offline"
            title: qsTrId("keep-area.title")
            accessibilityLabel: title
            onClicked: {
                sheet.close()
                sheet.panel.keepArea()
            }
        }
        WideButton {
            Layout.fillWidth: true
            //: Action to cancel display of the share sheet
            //% "Cancel"
            title: qsTrId("general.cancel")
            accessibilityLabel: title
            alternateStyle: true
            onClicked: sheet.close()
        }
    }
}
