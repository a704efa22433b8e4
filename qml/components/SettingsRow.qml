import QtQuick
import QtQuick.Layouts
import Veltor

// A settings row that leads to a picker: its title, the current choice and a chevron. A screen
// reader says the title, then the choice as the row's description.
PressableButton {
    id: control

    property string title
    property string detail
    property string detailAccessibilityLabel

    accessibilityLabel: title
    implicitHeight: Theme.minimumTouchSize
    Accessible.description: detailAccessibilityLabel

    background: Rectangle {
        color: Theme.keyFaceColor
        opacity: Theme.keyContentOpacity(!control.down)
    }
    contentItem: RowLayout {
        spacing: Theme.spacing
        Body1Label {
            Accessible.ignored: true
            Layout.leftMargin: Theme.spacing
            text: control.title
        }
        Item {
            Layout.fillWidth: true
        }
        Body1Label {
            Accessible.ignored: true
            text: control.detail
            color: Theme.tintColor
            elide: Text.ElideMiddle
            Layout.maximumWidth: control.width / 2
        }
        CaptionLabel {
            Accessible.ignored: true
            Layout.rightMargin: Theme.spacing
            text: "›"
            font: Theme.titleFont
        }
    }
}
