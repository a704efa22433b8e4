import QtQuick
import QtQuick.Layouts
import Veltor

// The menu of the map's tools, grouped: the target, records for the field, and the set-up. What
// a wide window shows in its toolbar is left out here.
ActionSheet {
    id: menu

    required property RootViewController root
    required property MapPanelController panel
    required property TargetController target
    required property ProofSnapshotController proof
    // The window's width: which tools the toolbar already holds.
    property real windowWidth

    function holds(action: int): bool {
        return menu.root.menuHolds(action, menu.windowWidth, menu.target.shown)
    }

    //: Spoken name and tooltip of the button that opens the menu of tools
    //% "Menu"
    accessibilityLabel: qsTrId("menu.title")

    SecondaryLabel {
        Layout.fillWidth: true
        Layout.leftMargin: Theme.spacing / 2
        visible: menu.holds(RootViewController.SetTarget) || menu.holds(RootViewController.TypeTarget)
        //: Heading of the menu's group of target actions
        //% "Target"
        text: qsTrId("menu.section.target")
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    ActionRow {
        visible: menu.holds(RootViewController.SetTarget)
        glyph: "target"
        //: Share sheet action: the current point becomes the target for distance and bearing
        //% "Set as Target"
        title: qsTrId("target.set")
        onClicked: {
            menu.target.setCurrentPointAsTarget()
            menu.close()
        }
    }
    ActionRow {
        visible: menu.holds(RootViewController.TypeTarget)
        glyph: "keypad"
        //: Share sheet action: opens the locator keypad to type the target
        //% "Type Target Locator"
        title: qsTrId("target.type")
        onClicked: {
            menu.close()
            menu.target.typeTarget()
        }
    }
    ActionRow {
        visible: menu.holds(RootViewController.ClearTarget)
        glyph: "close"
        //: Menu action: the target is dropped, and with it the way to it
        //% "Clear Target"
        title: qsTrId("menu.clear-target")
        onClicked: {
            menu.target.clearTarget()
            menu.close()
        }
    }
    SecondaryLabel {
        Layout.fillWidth: true
        Layout.leftMargin: Theme.spacing / 2
        Layout.topMargin: Theme.spacing
        visible: menu.holds(RootViewController.SaveProof) || menu.holds(RootViewController.KeepArea)
        //: Heading of the menu's group of actions for work in the field
        //% "In the Field"
        text: qsTrId("menu.section.field")
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    ActionRow {
        visible: menu.holds(RootViewController.SaveProof)
        glyph: "proof"
        //: Share sheet action: saves a picture of the window and a text file proving the position
        //% "Save Proof"
        title: qsTrId("proof.save")
        onClicked: {
            // Closed first, so the picture shows the screen and not the menu.
            menu.close()
            menu.proof.save()
        }
    }
    ActionRow {
        visible: menu.holds(RootViewController.KeepArea)
        glyph: "download"
        //: Title of the screen that keeps an area of the online map for use without a network,
        //: and of the share sheet's button that opens it
        //% "Keep Area Offline"
        title: qsTrId("keep-area.title")
        onClicked: {
            menu.close()
            menu.panel.keepArea()
        }
    }
    SecondaryLabel {
        Layout.fillWidth: true
        Layout.leftMargin: Theme.spacing / 2
        Layout.topMargin: Theme.spacing
        //: Heading of the menu's group of set-up actions
        //% "Set-up"
        text: qsTrId("menu.section.setup")
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    ActionRow {
        visible: menu.holds(RootViewController.MapSource)
        glyph: "layers"
        //: Menu action: opens the choice of map source
        //% "Map Source"
        title: qsTrId("menu.map-source")
        onClicked: {
            menu.close()
            menu.root.showMapSourceSettings()
        }
    }
    ActionRow {
        visible: menu.holds(RootViewController.Station)
        glyph: "station"
        //: Menu action: opens the station settings (GPS source, WSJT-X, JS8Call)
        //% "Station"
        title: qsTrId("menu.station")
        onClicked: {
            menu.close()
            menu.root.showStationSettings()
        }
    }
    ActionRow {
        visible: menu.holds(RootViewController.Settings)
        glyph: "settings"
        //: Title of the settings screen and spoken name of the button that opens it
        //% "Settings"
        title: qsTrId("settings.title")
        onClicked: {
            menu.close()
            menu.root.showSettings()
        }
    }
}
