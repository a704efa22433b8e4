import QtQuick
import QtQuick.Layouts
import Veltor

// One action of a sheet or menu: its icon, then its label, a whole row for a gloved finger.
PressableButton {
    id: control

    property string title
    property string glyph

    Layout.fillWidth: true
    implicitHeight: Math.max(Theme.minimumTouchSize, contentItem.implicitHeight + Theme.spacing)
    accessibilityLabel: title
    cornerRadius: 8

    background: Rectangle {
        radius: control.cornerRadius
        color: control.down ? Theme.dividerColor : "transparent"
    }
    contentItem: RowLayout {
        spacing: Theme.spacing
        Image {
            Layout.leftMargin: Theme.spacing / 2
            source: Theme.glyphSource(control.glyph, Theme.tintColor)
            sourceSize.width: 34
            sourceSize.height: 24
            Accessible.ignored: true
        }
        Text {
            Layout.fillWidth: true
            text: control.title
            color: Theme.textColor
            font: Theme.body1Font
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
