import QtQuick
import QtQuick.Layouts
import Veltor

// Tappable underlined text in the tint colour, sized to its text plus 40 × 16 points. Pressing
// dims it at once; releasing fades it back. Where a layout places it, it is never smaller than a
// gloved finger; the text stays as drawn, and wraps rather than being cut short.
PressableButton {
    id: control

    //: Title of a button that was given none
    //% "Button"
    property string title: qsTrId("component.button.default")
    property int textAlignment: Text.AlignHCenter

    accessibilityLabel: title
    font: Theme.underlineButtonFont
    implicitWidth: metrics.width + 40
    implicitHeight: Math.max(metrics.height, contentItem.implicitHeight) + 16
    Layout.minimumWidth: Theme.minimumTargetSize
    Layout.minimumHeight: Math.max(implicitHeight, Theme.minimumTargetSize)

    TextMetrics {
        id: metrics
        font: control.font
        text: control.title
    }

    contentItem: Text {
        text: control.title
        color: Theme.tintColor
        font.family: control.font.family
        font.pixelSize: control.font.pixelSize
        font.weight: control.font.weight
        font.underline: true
        horizontalAlignment: control.textAlignment
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
    }

    states: State {
        name: "pressed"
        when: control.down
        PropertyChanges {
            control.opacity: Theme.pressedOpacity
        }
    }
    transitions: Transition {
        from: "pressed"
        NumberAnimation {
            property: "opacity"
            duration: Theme.releaseFadeMs
        }
    }
}
