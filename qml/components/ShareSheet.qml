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
            title: sheet.panel.copyLatitudeLongitudeTitle
            accessibilityLabel: title
            onClicked: {
                sheet.panel.copyLatitudeLongitude()
                sheet.close()
            }
        }
        WideButton {
            Layout.fillWidth: true
            title: sheet.panel.copyVeltorTitle
            accessibilityLabel: title
            onClicked: {
                sheet.panel.copyVeltor()
                sheet.close()
            }
        }
        WideButton {
            Layout.fillWidth: true
            title: sheet.panel.showInMapsTitle
            accessibilityLabel: title
            onClicked: {
                sheet.panel.showInMaps()
                sheet.close()
            }
        }
        WideButton {
            Layout.fillWidth: true
            title: sheet.target.setTargetTitle
            accessibilityLabel: title
            onClicked: {
                sheet.target.setCurrentPointAsTarget()
                sheet.close()
            }
        }
        WideButton {
            Layout.fillWidth: true
            title: sheet.target.typeTargetTitle
            accessibilityLabel: title
            onClicked: {
                sheet.close()
                sheet.target.typeTarget()
            }
        }
        WideButton {
            Layout.fillWidth: true
            title: sheet.proof.saveTitle
            accessibilityLabel: title
            onClicked: {
                // Closed first, so the picture shows the screen and not the sheet.
                sheet.close()
                sheet.proof.save()
            }
        }
        WideButton {
            Layout.fillWidth: true
            title: sheet.panel.keepAreaTitle
            accessibilityLabel: title
            onClicked: {
                sheet.close()
                sheet.panel.keepArea()
            }
        }
        WideButton {
            Layout.fillWidth: true
            title: sheet.panel.cancelTitle
            accessibilityLabel: title
            alternateStyle: true
            onClicked: sheet.close()
        }
    }
}
