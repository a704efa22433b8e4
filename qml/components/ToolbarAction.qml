import QtQuick
import Veltor

// A tool in the toolbar of a wide window: its icon and its label.
PressableButton {
    id: control

    property string title
    property string glyph

    implicitHeight: Theme.minimumTouchSize
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    leftPadding: Theme.spacing
    rightPadding: Theme.spacing
    accessibilityLabel: title
    cornerRadius: 8

    background: Rectangle {
        radius: control.cornerRadius
        color: control.down ? Theme.dividerColor : "transparent"
    }
    contentItem: Row {
        spacing: Theme.spacing / 2
        Image {
            anchors.verticalCenter: parent.verticalCenter
            source: Theme.glyphSource(control.glyph, Theme.tintColor)
            sourceSize.width: 34
            sourceSize.height: 24
            Accessible.ignored: true
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: control.title
            color: Theme.tintColor
            font: Theme.body1Font
            Accessible.ignored: true
        }
    }
}
