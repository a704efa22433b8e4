import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Templates as T
import Veltor

// Presents one screen modally: a centred card on a wide window, the whole window on a narrow
// one. The screen is made when presented and destroyed when the sheet closes.
Popup {
    id: sheet

    readonly property size sheetSize: Theme.formSheetSize(Qt.size(parent.width, parent.height))

    // What gets the keyboard's focus back when the sheet closes: whatever had it, unless the
    // presenter names another (the button of a menu the sheet was opened from).
    property Item opener

    function present(screen: Component) {
        rememberOpener()
        loader.sourceComponent = screen
        open()
    }

    // A screen that needs what only its presenter holds, handed over as it is made.
    function presentFile(file: url, properties: var) {
        rememberOpener()
        loader.setSource(file, properties)
        open()
    }

    function rememberOpener() {
        if (!opener)
            opener = sheet.parent.Window.activeFocusItem
    }

    parent: T.Overlay.overlay
    x: (parent.width - width) / 2
    y: (parent.height - height) / 2
    width: sheetSize.width
    height: sheetSize.height
    padding: 0
    modal: true
    focus: true
    // Screens close themselves (Done, Escape); a stray tap outside must not lose typing.
    closePolicy: Popup.NoAutoClose

    background: Rectangle {
        color: Theme.surfaceColor
        border.color: Theme.dividerColor
    }
    T.Overlay.modal: Rectangle {
        color: Theme.scrimColor
    }

    Loader {
        id: loader
        anchors.fill: parent
        focus: true
    }
    // Every screen presented here closes itself by asking to be dismissed.
    Connections {
        target: loader.item
        ignoreUnknownSignals: true
        function onDismissRequested() { sheet.close() }
    }

    // Up from the foot of the window and back down, as the platform's sheets move.
    enter: Transition {
        NumberAnimation {
            property: "y"
            from: sheet.parent.height
            to: (sheet.parent.height - sheet.height) / 2
            duration: 250
            easing.type: Easing.OutCubic
        }
    }
    exit: Transition {
        NumberAnimation {
            property: "y"
            to: sheet.parent.height
            duration: 200
            easing.type: Easing.InCubic
        }
    }

    onOpened: {
        // The animation set y; centred again whatever the window does next.
        y = Qt.binding(() => (parent.height - height) / 2)
        loader.forceActiveFocus()
    }
    onClosed: {
        loader.sourceComponent = null
        if (opener && opener.visible)
            opener.forceActiveFocus(Qt.OtherFocusReason)
        opener = null
    }
}
