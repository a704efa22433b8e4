import QtQuick
import Veltor

// A full-width button with a label, such as the tracking button: its alternate style is the
// filled one, for an action that is on.
PressableButton {
    id: control

    property string title
    property string accessibilityHint
    // A glyph before the title, in the title's colour.
    property string glyph
    property bool alternateStyle: false
    property color backgroundColor: Theme.keyFaceColor
    property color foregroundColor: Theme.tintColor

    implicitHeight: 64
    // Sized to its glyph and title where it need not span the window.
    implicitWidth: titleMetrics.width + 34 + 7 * Theme.spacing
    font: Theme.body2Font

    cornerRadius: 10

    TextMetrics {
        id: titleMetrics
        font: control.font
        text: control.title
    }

    background: Rectangle {
        radius: control.cornerRadius
        color: control.backgroundColor
        border.color: Theme.tintColor
        border.width: 2
    }
    contentItem: Item {
        Row {
            anchors.centerIn: parent
            spacing: Theme.spacing
            Image {
                anchors.verticalCenter: parent.verticalCenter
                source: Theme.glyphSource(control.glyph, control.foregroundColor)
                sourceSize.width: 34
                sourceSize.height: 24
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: control.title
                color: control.foregroundColor
                font: control.font
            }
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

    Accessible.description: control.accessibilityHint
}
