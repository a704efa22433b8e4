import QtQuick
import QtQuick.Layouts
import Veltor

// Under the read-outs: what the receiver says of its fix (or why tracking ended), a warning when
// the live fix is stale or may lie in another cell, and the field instruments: where the point
// lies in its cell and the way to the target. Folded, the instruments are one line that unfolds
// with a tap; unfolded in a narrow window, a tap on their head folds them again.
ColumnLayout {
    id: view

    property bool folded: false
    // A narrow window, where the root folds the instruments to leave the map its room.
    property bool foldable: true
    signal toggled()

    readonly property bool hasInstruments: tools.hasInstruments
    readonly property real statusHeight: status.implicitHeight
    readonly property real foldedHeight: statusHeight + (hasInstruments ? summary.implicitHeight : 0)
    readonly property real unfoldedHeight: statusHeight + (hasInstruments ? instruments.implicitHeight
                                                                           + summary.implicitHeight
                                                                         : 0)

    spacing: 0

    FieldToolsController {
        id: tools
    }

    ColumnLayout {
        id: status
        Layout.fillWidth: true
        spacing: 0

        SecondaryLabel {
            Layout.fillWidth: true
            visible: text.length > 0
            text: tools.fix.receiverText
            color: tools.fix.failed ? Theme.textColor : Theme.secondaryTextColor
            padding: tools.fix.failed ? Theme.spacing / 2 : 0
            background: Rectangle {
                color: tools.fix.failed ? Theme.warningColor : "transparent"
                radius: 4
            }
            Accessible.role: Accessible.StaticText
            Accessible.name: tools.fix.receiverAccessibilityLabel
        }
        SecondaryLabel {
            Layout.fillWidth: true
            visible: text.length > 0
            text: tools.stationProblem
            color: Theme.textColor
            padding: Theme.spacing / 2
            wrapMode: Text.Wrap
            background: Rectangle {
                color: Theme.warningColor
                radius: 4
            }
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        TintLabel {
            Layout.fillWidth: true
            visible: tools.fix.stale
            text: tools.fix.text
            font: Theme.body2Font
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: tools.fix.accessibilityLabel
        }
        TintLabel {
            Layout.fillWidth: true
            visible: tools.position.uncertain
            text: tools.position.uncertainText
            font: Theme.body2Font
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: tools.position.uncertainAccessibilityLabel
        }
    }

    // Folded: the nearest edge and the target in one line; unfolded: the head that folds them.
    PressableButton {
        id: summary
        Layout.fillWidth: true
        visible: view.hasInstruments && (view.folded || view.foldable)
        implicitHeight: Math.max(Theme.minimumTargetSize, contentItem.implicitHeight)
        accessibilityLabel: tools.summaryAccessibilityLabel
        //: Spoken hint of that line, folded
        //% "Unfolds the field tools"
        Accessible.description: view.folded ? qsTrId("field-tools.unfold")
                                              //: Spoken hint of that line, unfolded
                                              //% "Folds the field tools"
                                            : qsTrId("field-tools.fold")
        onClicked: view.toggled()
        contentItem: RowLayout {
            spacing: Theme.spacing
            // One line, as the map needs the room: smaller type before it ever runs out.
            Body1Label {
                Layout.fillWidth: true
                text: tools.summaryText
                fontSizeMode: Text.HorizontalFit
                minimumPixelSize: 13
                elide: Text.ElideRight
                Accessible.ignored: true
            }
            Image {
                source: Theme.glyphSource(view.folded ? "unfold" : "fold", Theme.tintColor)
                sourceSize.width: 34
                sourceSize.height: 24
                Accessible.ignored: true
            }
        }
    }

    Flow {
        id: instruments
        Layout.fillWidth: true
        visible: view.hasInstruments && !view.folded
        spacing: Theme.spacing

        CellInstrument {
            visible: tools.position.shown
            width: Math.min(implicitWidth, instruments.width)
            position: tools.position
        }
        TargetInstrument {
            visible: tools.target.shown
            width: Math.min(Math.max(implicitWidth, 280), instruments.width)
            target: tools.target
        }
    }
}
