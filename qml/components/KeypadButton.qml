import QtQuick
import Veltor

// A key of the keypads: a flat face with its title or glyph, colours swapped while pressed
// (or always, for the alternate style), a click on every touch-down. A disabled key is left
// out of what a screen reader walks through.
PressableButton {
    id: control

    //: Title of a button that was given none
    //% "Button"
    property string title: qsTrId("component.button.default")
    property string accessibilityTitle
    property bool alternateStyle: false
    // The name of a glyph drawn in place of the title, in the key's foreground colour.
    property string maskImage

    property color backgroundColor: Theme.keyFaceColor
    property color foregroundColor: Theme.tintColor

    accessibilityLabel: Theme.keyAccessibilityLabel(title, accessibilityTitle)
    implicitWidth: Theme.minimumTouchSize
    implicitHeight: Theme.minimumTouchSize
    font: Theme.keyFont

    background: Rectangle {
        color: control.backgroundColor
    }
    contentItem: Item {
        opacity: Theme.keyContentOpacity(control.enabled)
        Text {
            anchors.fill: parent
            text: control.title
            color: control.foregroundColor
            font: control.font
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 12
        }
        Image {
            anchors.centerIn: parent
            source: Theme.glyphSource(control.maskImage, control.foregroundColor)
            sourceSize.width: 34
            sourceSize.height: 24
        }
    }

    states: State {
        name: "inverted"
        when: Theme.keyInverted(control.alternateStyle, control.down)
        PropertyChanges {
            control.backgroundColor: Theme.tintColor
            control.foregroundColor: Theme.keyFaceColor
        }
    }

    onPressed: KeyboardClick.play()

    Accessible.ignored: !control.enabled
}
