import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Veltor

// The root screen: the toolbar with the accuracy of a live fix, the coordinate panel, the map
// panel, and the host that presents the keypads as form sheets.
Page {
    id: screen

    property string initialScreen
    property bool tablet
    property real initialZoomLevel: 11
    property bool welcomeOffered: false
    // A sheet, menu, alert or the first-run card is up: what lies behind it is out of reach.
    readonly property bool modalOpen: sheet.visible || shareSheet.visible || toolsMenu.visible
                                      || alert.visible || welcome.visible
    //: The app's name, in the window title
    //% "Veltor"
    title: qsTrId("app.name")
    // The map has every tile it needs and nothing moves: a picture now shows the whole screen.
    readonly property bool settled: mapView.idle && !mapPanel.checkingMapFile

    RootViewController {
        id: controller
        initialScreen: screen.initialScreen
        tablet: screen.tablet
        welcomeOffered: screen.welcomeOffered
    }
    RootCoordinatePanelController {
        id: toolbarController
    }

    background: Rectangle {
        color: Theme.windowColor
    }

    header: Rectangle {
        implicitHeight: toolbar.implicitHeight
        color: Theme.surfaceColor
        ModalShield {
            anchors.fill: parent
            active: screen.modalOpen
            Accessible.role: Accessible.ToolBar
            RowLayout {
                id: toolbar
                anchors.fill: parent
                anchors.leftMargin: Theme.spacing
                anchors.rightMargin: Theme.spacing
                UnderlineButton {
                    title: panel.controller.veltorText
                    accessibilityLabel: panel.controller.veltor2AccessibilityLabel
                    font: Theme.readoutFont
                    textAlignment: Text.AlignLeft
                    onClicked: panel.controller.showVeltorKeypad()
                }
                Item {
                    Layout.fillWidth: true
                }
                Body1Label {
                    text: toolbarController.accuracyText
                    opacity: toolbarController.accuracyOpacity
                    color: Theme.tintColor
                    Accessible.name: text
                }
                // A wide window's tools, labelled, in reading order after the locator.
                ToolbarAction {
                    id: toolbarShare
                    visible: controller.toolbarHolds(RootViewController.Share, screen.width)
                    glyph: "share"
                    title: qsTrId("sharesheet.title")
                    onClicked: shareSheet.present(toolbarShare)
                }
                ToolbarAction {
                    visible: controller.toolbarHolds(RootViewController.SetTarget, screen.width)
                    glyph: "target"
                    title: qsTrId("target.set")
                    onClicked: targetController.setCurrentPointAsTarget()
                }
                ToolbarAction {
                    visible: controller.toolbarHolds(RootViewController.SaveProof, screen.width)
                    glyph: "proof"
                    title: qsTrId("proof.save")
                    onClicked: proof.save()
                }
                ToolbarAction {
                    visible: controller.toolbarHolds(RootViewController.KeepArea, screen.width)
                    glyph: "download"
                    title: qsTrId("keep-area.title")
                    onClicked: mapPanel.keepArea()
                }
                ToolbarAction {
                    visible: controller.toolbarHolds(RootViewController.Settings, screen.width)
                    glyph: "settings"
                    title: qsTrId("settings.title")
                    onClicked: controller.showSettings()
                }
                ToolbarAction {
                    id: toolbarMenu
                    visible: controller.toolbarHolds(RootViewController.Menu, screen.width)
                    glyph: "menu"
                    title: qsTrId("menu.title")
                    onClicked: toolsMenu.present(toolbarMenu)
                }
            }
        }
    }

    ModalShield {
        anchors.fill: parent
        active: screen.modalOpen
        Accessible.role: Accessible.Grouping
        ColumnLayout {
            anchors.fill: parent
            spacing: 0

            Rectangle {
                Layout.fillWidth: true
                visible: controller.bannerVisible
                implicitHeight: Math.max(bannerText.implicitHeight + 2 * Theme.spacing,
                                         Theme.minimumTargetSize)
                color: Theme.warningColor
                Body1Label {
                    id: bannerText
                    anchors.left: parent.left
                    anchors.right: bannerClose.left
                    anchors.verticalCenter: parent.verticalCenter
                    anchors.margins: Theme.spacing
                    text: controller.bannerMessage
                    wrapMode: Text.Wrap
                }
                PressableButton {
                    id: bannerClose
                    anchors.right: parent.right
                    anchors.top: parent.top
                    width: Theme.minimumTargetSize
                    height: Theme.minimumTargetSize
                    //: Spoken name of the button that closes the message at the top of the window
                    //% "Close message"
                    accessibilityLabel: qsTrId("root.banner.close")
                    onClicked: controller.dismissBanner()
                    contentItem: Image {
                        source: Theme.glyphSource("close", Theme.textColor)
                        sourceSize.width: 34
                        sourceSize.height: 24
                        fillMode: Image.Pad
                        Accessible.ignored: true
                    }
                }
            }

            // Stacked in compact width, side by side in regular width, a hairline between them.
            Item {
                id: panels
                Layout.fillWidth: true
                Layout.fillHeight: true

                // In a wide window the panel is a column beside the map, scrolling when it is taller.
                Flickable {
                    id: panelScroller
                    readonly property rect frame: controller.panelRect(panels.width, panels.height,
                                                                       panel.implicitHeight)
                    x: frame.x
                    y: frame.y
                    width: frame.width
                    height: frame.height
                    contentHeight: panel.implicitHeight
                    clip: true
                    boundsBehavior: Flickable.StopAtBounds
                    // Shown whenever there is more below, so that a cut-off panel reads as one.
                    ScrollBar.vertical: ScrollBar {
                        policy: ScrollBar.AlwaysOn
                        visible: panelScroller.contentHeight > panelScroller.height
                        contentItem: Rectangle {
                            implicitWidth: 6
                            radius: 3
                            color: Theme.controlColor
                        }
                    }

                    CoordinatePanelScreen {
                        id: panel
                        width: parent.width
                        showsLocator: controller.panelShowsLocator(panels.width, panels.height,
                                                                   screen.height, readoutsHeight,
                                                                   locatorHeight, foldedToolsHeight)
                        toolsFolded: controller.fieldToolsFolded(controller.fieldToolsFolding,
                                                                 panels.width, panels.height,
                                                                 screen.height, readoutsHeight,
                                                                 locatorHeight, foldedToolsHeight,
                                                                 toolsHeight)
                        toolsFoldable: !controller.isRegularWidth(panels.width, panels.height)
                        toolsBeside: controller.panelHoldsToolsBeside(panels.width)
                        onToolsToggled: controller.setFieldToolsFolded(!toolsFolded)
                    }
                }

                Rectangle {
                    readonly property rect frame: controller.dividerRect(panels.width, panels.height,
                                                                         panel.implicitHeight,
                                                                         Screen.devicePixelRatio)
                    x: frame.x
                    y: frame.y
                    width: frame.width
                    height: frame.height
                    color: Theme.dividerColor
                }

                MapView {
                    id: mapView
                    readonly property rect frame: controller.mapRect(panels.width, panels.height,
                                                                     panel.implicitHeight,
                                                                     Screen.devicePixelRatio)
                    x: frame.x
                    y: frame.y
                    width: frame.width
                    height: frame.height
        
                    MapPanelController {
                        id: mapPanel
                        map: mapView
                        initialZoomLevel: screen.initialZoomLevel
                        tablet: screen.tablet
                        appearance: Theme.appearance
                    }

                    // The way to the target, over the map and under its buttons.
                    GreatCircleOverlay {
                        anchors.fill: parent
                        map: mapView
                        color: Theme.tintColor
                        active: targetController.shown
                        fromLatitude: targetController.pointLatitude
                        fromLongitude: targetController.pointLongitude
                        toLatitude: targetController.targetLatitude
                        toLongitude: targetController.targetLongitude
                        Accessible.ignored: true
                    }

                    // The map to a screen reader: a button that does what a long press does, at the
                    // centre. It takes no touches, so the map's own gestures are untouched.
                    Item {
                        anchors.fill: parent
                        Accessible.role: Accessible.Button
                        //: Spoken name of the map
                        //% "Map"
                        Accessible.name: qsTrId("map.accessibility.title")
                        //: Spoken hint of the map: pressing it places the point where the map is centred
                        //% "Places the point at the centre of the map"
                        Accessible.description: qsTrId("map.accessibility.hint")
                        Accessible.onPressAction: mapPanel.placePointAtMapCentre()
                    }

                    Column {
                        anchors.left: parent.left
                        anchors.top: parent.top
                        anchors.margins: Theme.spacing
                        spacing: Theme.spacing
                        MapControlButton {
                            id: menuButton
                            visible: controller.mapHolds(RootViewController.Menu, screen.width)
                            title: ""
                            glyph: "menu"
                            //: Spoken name and tooltip of the button that opens the menu of tools
                            //% "Menu"
                            accessibilityLabel: qsTrId("menu.title")
                            toolTip: accessibilityLabel
                            onClicked: toolsMenu.present(menuButton)
                        }
                        MapControlButton {
                            id: shareButton
                            visible: controller.mapHolds(RootViewController.Share, screen.width)
                            title: ""
                            glyph: "share"
                            //: Button that opens the share sheet
                            //% "Share"
                            accessibilityLabel: qsTrId("sharesheet.title")
                            toolTip: accessibilityLabel
                            onClicked: mapPanel.share()
                        }
                    }

                    Column {
                        anchors.right: parent.right
                        anchors.bottom: trackButton.top
                        anchors.margins: Theme.spacing
                        spacing: Theme.spacing
                        MapControlButton {
                            glyph: "plus"
                            //: Spoken name of the map's zoom-in button
                            //% "Zoom in"
                            accessibilityLabel: qsTrId("map.zoom-in")
                            toolTip: accessibilityLabel
                            onClicked: mapView.zoomIn()
                        }
                        MapControlButton {
                            glyph: "minus"
                            //: Spoken name of the map's zoom-out button
                            //% "Zoom out"
                            accessibilityLabel: qsTrId("map.zoom-out")
                            toolTip: accessibilityLabel
                            onClicked: mapView.zoomOut()
                        }
                    }

                    // The scale at the centre, in the user's distance units: at the top right, the
                    // one corner no button takes however short the map is.
                    Column {
                        anchors.right: parent.right
                        anchors.top: parent.top
                        anchors.margins: Theme.spacing
                        spacing: 2
                        Accessible.role: Accessible.StaticText
                        Accessible.name: mapPanel.scaleBarAccessibilityLabel
                        Label {
                            anchors.right: parent.right
                            text: mapPanel.scaleBarText
                            color: Theme.mapControlTextColor
                            font: Theme.secondaryFont
                            leftPadding: 4
                            rightPadding: 4
                            background: Rectangle {
                                color: Theme.mapControlColor
                                radius: 3
                            }
                            Accessible.ignored: true
                        }
                        Rectangle {
                            anchors.right: parent.right
                            width: mapPanel.scaleBarLength + 4
                            height: 8
                            color: Theme.mapControlColor
                            radius: 2
                            Rectangle {
                                anchors.centerIn: parent
                                width: mapPanel.scaleBarLength
                                height: 4
                                color: Theme.mapControlTextColor
                            }
                        }
                    }

                    Label {
                        id: attribution
                        anchors.left: parent.left
                        anchors.bottom: trackButton.top
                        anchors.margins: 6
                        text: mapView.attribution
                        color: Theme.mapControlTextColor
                        font.pixelSize: 12
                        padding: 3
                        background: Rectangle {
                            color: Theme.mapControlColor
                            radius: 3
                        }
                    }

                    // A crossing into another cell, seen as well as heard: large, over the top of the
                    // map, for a few seconds; a screen reader meets it as an alert.
                    Rectangle {
                        anchors.horizontalCenter: parent.horizontalCenter
                        anchors.top: parent.top
                        anchors.topMargin: Theme.spacing
                        width: Math.min(parent.width - 2 * Theme.spacing,
                                        crossingText.implicitWidth + 4 * Theme.spacing)
                        height: crossingText.implicitHeight + 2 * Theme.spacing
                        radius: 12
                        color: Theme.tintColor
                        visible: crossingAlert.bannerShown
                        Accessible.role: Accessible.AlertMessage
                        Accessible.name: crossingAlert.bannerAccessibilityLabel
                        // The title's size at a heavier weight, to be read at a glance.
                        Label {
                            id: crossingText
                            anchors.centerIn: parent
                            width: Math.min(implicitWidth, parent.width - 2 * Theme.spacing)
                            horizontalAlignment: Text.AlignHCenter
                            wrapMode: Text.Wrap
                            text: crossingAlert.bannerText
                            color: Theme.keyFaceColor
                            font.family: Theme.titleFont.family
                            font.pixelSize: Theme.titleFont.pixelSize
                            font.weight: Font.Medium
                            Accessible.ignored: true
                        }
                    }

                    // Across a phone's map; sized to its text where the toolbar holds the tools.
                    WideButton {
                        id: trackButton
                        anchors.horizontalCenter: parent.horizontalCenter
                        anchors.bottom: parent.bottom
                        anchors.margins: Theme.spacing
                        width: controller.toolbarHolds(RootViewController.Share, screen.width)
                               ? implicitWidth : parent.width - 2 * Theme.spacing
                        title: mapPanel.trackingButtonTitle
                        accessibilityLabel: mapPanel.trackingButtonAccessibilityTitle
                        accessibilityHint: mapPanel.trackingButtonAccessibilityHint
                        alternateStyle: mapPanel.tracking
                        glyph: mapPanel.trackingButtonImage
                        onClicked: mapPanel.toggleTracking()
                    }
                }
            }
        }
    }

    FormSheet {
        id: sheet
    }
    GridCrossingAlert {
        id: crossingAlert
    }
    TargetController {
        id: targetController
    }
    ProofSnapshotController {
        id: proof
        window: screen.Window.window
    }
    WelcomeCard {
        id: welcome
        visible: controller.welcomeShown
        menuText: controller.welcomeMenuText(screen.width)
        onDismissed: controller.dismissWelcome()
    }
    ShareSheet {
        id: shareSheet
        panel: mapPanel
    }
    ToolsMenu {
        id: toolsMenu
        root: controller
        panel: mapPanel
        target: targetController
        proof: proof
        windowWidth: screen.width
    }
    // What saving a proof did, over the foot of the window for a few seconds.
    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 3 * Theme.spacing
        width: Math.min(parent.width - 2 * Theme.spacing, proofText.implicitWidth + 2 * Theme.spacing)
        height: proofText.implicitHeight + Theme.spacing
        radius: height / 2
        color: Theme.surfaceColor
        border.color: Theme.dividerColor
        visible: proof.message.length > 0
        Accessible.role: Accessible.StaticText
        Accessible.name: proof.message
        Body2Label {
            id: proofText
            anchors.centerIn: parent
            width: Math.min(implicitWidth, parent.width - 2 * Theme.spacing)
            text: proof.message
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            Accessible.ignored: true
        }
    }
    Connections {
        target: mapPanel
        function onShareSheetRequested() {
            shareSheet.present(shareButton.visible ? shareButton : toolbarShare)
        }
    }
    // The locator and the latitude and longitude, straight to the clipboard.
    Shortcut {
        sequence: "Ctrl+C"
        onActivated: mapPanel.copyVeltor()
    }
    Shortcut {
        sequence: "Ctrl+Shift+C"
        onActivated: mapPanel.copyLatitudeLongitude()
    }
    Shortcut {
        sequence: "F11"
        onActivated: Window.window.visibility = controller.fullScreenToggled(Window.window.visibility)
    }
    Component {
        id: latitudeKeypad
        LatitudeLongitudeKeypadScreen {
            style: LatitudeLongitudeKeypadViewController.Latitude
        }
    }
    Component {
        id: longitudeKeypad
        LatitudeLongitudeKeypadScreen {
            style: LatitudeLongitudeKeypadViewController.Longitude
        }
    }
    Component {
        id: veltorKeypad
        VeltorKeypadScreen {}
    }
    Component {
        id: targetKeypad
        VeltorKeypadScreen {
            targetMode: true
        }
    }
    Component {
        id: settingsScreen
        SettingsScreen {}
    }
    Component {
        id: stationSettingsScreen
        SettingsScreen {
            initialPicker: SettingsViewController.StationPicker
        }
    }
    Component {
        id: mapSourceSettingsScreen
        SettingsScreen {
            initialPicker: SettingsViewController.MapSourcePicker
        }
    }

    Connections {
        target: targetController
        function onTargetKeypadRequested() { screen.presentSheet(targetKeypad) }
    }
    Connections {
        target: panel.controller
        function onLatitudeKeypadRequested() { screen.presentSheet(latitudeKeypad) }
        function onLongitudeKeypadRequested() { screen.presentSheet(longitudeKeypad) }
        function onVeltorKeypadRequested() { screen.presentSheet(veltorKeypad) }
    }
    Connections {
        target: controller
        function onLatitudeKeypadRequested() { screen.presentSheet(latitudeKeypad) }
        function onLongitudeKeypadRequested() { screen.presentSheet(longitudeKeypad) }
        function onVeltorKeypadRequested() { screen.presentSheet(veltorKeypad) }
        function onSettingsRequested() { screen.presentSheet(settingsScreen) }
        function onStationSettingsRequested() { screen.presentSheet(stationSettingsScreen) }
        function onMenuRequested() { toolsMenu.present(menuButton.visible ? menuButton : toolbarMenu) }
        function onShareSheetRequested() {
            shareSheet.present(shareButton.visible ? shareButton : toolbarShare)
        }
        function onMapSourceSettingsRequested() { screen.presentSheet(mapSourceSettingsScreen) }
        function onKeepAreaRequested() { screen.presentKeepArea() }
        function onAlertRequested(title: string, message: string, dismissButton: string,
                                  settingsButton: string) {
            screen.showAlert(title, message, dismissButton, settingsButton)
        }
    }
    Connections {
        target: mapPanel
        function onKeepAreaRequested() { screen.presentKeepArea() }
        function onAlertRequested(title: string, message: string, dismissButton: string) {
            screen.showAlert(title, message, dismissButton, "")
        }
    }

    // From a menu, focus goes back to the menu's button when the sheet closes, not to the menu,
    // which is gone by then.
    function takeOpenerFromMenus() {
        for (const menu of [toolsMenu, shareSheet]) {
            if (menu.visible) {
                sheet.opener = menu.opener
                menu.opener = null
            }
        }
    }

    function presentSheet(content: Component) {
        takeOpenerFromMenus()
        sheet.present(content)
    }

    // The keep-area screen keeps an area of this map, handed to it as it is made.
    function presentKeepArea() {
        takeOpenerFromMenus()
        sheet.presentFile(Qt.resolvedUrl("KeepAreaScreen.qml"), { map: mapView })
    }

    function showAlert(title: string, message: string, dismissButton: string,
                       settingsButton: string) {
        alert.title = title
        alertMessage.text = message
        alertButton.title = dismissButton
        alertSettingsButton.title = settingsButton
        alert.open()
    }

    Dialog {
        id: alert
        anchors.centerIn: parent
        width: Math.min(parent.width - 48, 360)
        modal: true
        background: Rectangle {
            color: Theme.surfaceColor
            radius: 10
            border.color: Theme.tintColor
        }
        header: Body2Label {
            text: alert.title
            padding: Theme.spacing
            wrapMode: Text.Wrap
        }
        Body1Label {
            id: alertMessage
            width: parent.width
            wrapMode: Text.Wrap
        }
        footer: ColumnLayout {
            spacing: Theme.spacing
            WideButton {
                id: alertSettingsButton
                Layout.fillWidth: true
                Layout.leftMargin: Theme.spacing
                Layout.rightMargin: Theme.spacing
                visible: title.length > 0
                accessibilityLabel: title
                onClicked: {
                    alert.accept()
                    controller.showStationSettings()
                }
            }
            WideButton {
                id: alertButton
                Layout.fillWidth: true
                Layout.margins: Theme.spacing
                Layout.topMargin: 0
                accessibilityLabel: title
                alternateStyle: alertSettingsButton.visible
                onClicked: alert.accept()
            }
        }
    }
}
