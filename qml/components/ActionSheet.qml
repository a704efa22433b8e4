import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T
import Veltor

// A list of actions: along the bottom of a narrow window, dropping from its button as a popover
// on a wide one. What does not fit scrolls; Cancel stays in view. Focus goes into the sheet and
// back to its button when it closes.
Popup {
    id: sheet

    // The actions, ActionRows and section labels.
    default property alias actions: list.data
    property string accessibilityLabel
    property Item opener

    function present(anchor: Item) {
        opener = anchor
        const rect = Theme.actionSheetRect(Qt.size(parent.width, parent.height),
                                           anchor.mapToItem(parent, 0, 0, anchor.width, anchor.height),
                                           list.implicitHeight + cancel.implicitHeight
                                           + Theme.spacing + 2 * padding)
        x = rect.x
        y = rect.y
        width = rect.width
        height = rect.height
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
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 200 }
        NumberAnimation { property: "scale"; from: 0.96; to: 1; duration: 200; easing.type: Easing.OutCubic }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: 150 }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: Theme.spacing
        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.accessibilityLabel

        Flickable {
            id: scroller
            Layout.fillWidth: true
            Layout.fillHeight: true
            implicitHeight: list.implicitHeight
            contentHeight: list.implicitHeight
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {
                policy: ScrollBar.AlwaysOn
                visible: scroller.contentHeight > scroller.height
                contentItem: Rectangle {
                    implicitWidth: 6
                    radius: 3
                    color: Theme.controlColor
                }
            }
            ColumnLayout {
                id: list
                width: scroller.width
                spacing: 0
            }
        }
        WideButton {
            id: cancel
            Layout.fillWidth: true
            implicitHeight: Theme.minimumTouchSize + 8
            //: Action to cancel display of the share sheet
            //% "Cancel"
            title: qsTrId("general.cancel")
            accessibilityLabel: title
            alternateStyle: true
            onClicked: sheet.close()
        }
    }

    onOpened: {
        for (let i = 0; i < list.children.length; ++i) {
            const item = list.children[i]
            if (item.visible && item.activeFocusOnTab) {
                item.forceActiveFocus()
                break
            }
        }
    }
    onClosed: if (opener) opener.forceActiveFocus()
}
