import QtQuick
import QtQuick.Controls.Basic
import Veltor

// The window and the navigation host; every screen lives in screens/.
ApplicationWindow {
    id: window

    required property bool tablet
    required property string initialScreen
    required property real initialZoomLevel
    required property bool welcomeOffered
    readonly property bool settled: rootScreen.settled

    width: 390
    height: 844
    visible: true
    title: rootScreen.title
    color: Theme.windowColor

    Binding {
        target: Theme
        property: "appearance"
        value: AppearanceSchedule.appearance
    }

    StackView {
        anchors.fill: parent
        initialItem: rootScreen
    }

    RootScreen {
        id: rootScreen
        initialScreen: window.initialScreen
        tablet: window.tablet
        initialZoomLevel: window.initialZoomLevel
        welcomeOffered: window.welcomeOffered
    }
}
