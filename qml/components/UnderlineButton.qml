import QtQuick
import Veltor

// Tappable underlined text in the tint colour, sized to its text plus 40 × 16 points. Pressing
// dims it at once; releasing fades it back.
PressableButton {
    id: control

    //: Title of a button that was given none
    //% "Button"
    property string title: qsTrId("component.button.default")
    property int textAlignment: Text.AlignHCenter

    accessibilityLabel: title
    font: Theme.underlineButtonFont
    implicitWidth: metrics.width + 40
    implicitHeight: metrics.height + 16

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
        elide: Text.ElideRight
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
