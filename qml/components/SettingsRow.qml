import QtQuick
import QtQuick.Controls.Basic
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
    implicitHeight: Math.max(Theme.minimumTouchSize, contentItem.implicitHeight + Theme.spacing)
    Accessible.description: detailAccessibilityLabel

    background: Rectangle {
        color: Theme.keyFaceColor
        opacity: Theme.keyContentOpacity(!control.down)
    }
    // The width the two texts share: the title takes what it needs, down to half of it when
    // the choice needs the rest; both wrap at word boundaries rather than lose letters.
    readonly property real textRoom: availableWidth - chevronMetrics.advanceWidth
                                     - 4 * Theme.spacing
    readonly property real titleWidth: Math.min(Math.ceil(titleMetrics.advanceWidth) + 1,
                                                Math.max(textRoom / 2,
                                                         textRoom - Math.ceil(detailMetrics.advanceWidth) - 1))

    // The texts' widths unwrapped, whatever the row does with them.
    TextMetrics {
        id: titleMetrics
        font: Theme.body1Font
        text: control.title
    }
    TextMetrics {
        id: detailMetrics
        font: Theme.body1Font
        text: control.detail
    }
    TextMetrics {
        id: chevronMetrics
        font: Theme.titleFont
        text: "›"
    }

    contentItem: RowLayout {
        spacing: Theme.spacing
        Body1Label {
            Accessible.ignored: true
            Layout.leftMargin: Theme.spacing
            Layout.preferredWidth: control.titleWidth
            text: control.title
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
        }
        Body1Label {
            Accessible.ignored: true
            Layout.fillWidth: true
            text: control.detail
            color: Theme.tintColor
            horizontalAlignment: Text.AlignRight
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
        }
        Label {
            Accessible.ignored: true
            Layout.rightMargin: Theme.spacing
            text: "›"
            color: Theme.controlColor
            font: Theme.titleFont
        }
    }
}
