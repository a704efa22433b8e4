import QtQuick
import QtQuick.Layouts
import Veltor

// A keypad's head: Cancel (✕) at its start, leaving without keeping anything typed, and what is
// being typed in the middle.
RowLayout {
    id: header

    property string title

    signal cancelled()

    spacing: 0

    PressableButton {
        implicitWidth: Theme.minimumTouchSize
        implicitHeight: Theme.minimumTouchSize
        //: Spoken name and tooltip of a keypad's ✕ button: closes it without keeping what was typed
        //% "Cancel"
        accessibilityLabel: qsTrId("general.cancel")
        toolTip: accessibilityLabel
        onClicked: header.cancelled()
        contentItem: Image {
            source: Theme.glyphSource("close", Theme.tintColor)
            sourceSize.width: 34
            sourceSize.height: 24
            fillMode: Image.Pad
            Accessible.ignored: true
        }
    }
    SecondaryLabel {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        text: header.title
    }
    Item {
        implicitWidth: Theme.minimumTouchSize
    }
}
