import QtQuick
import QtQuick.Layouts
import Veltor

// The way to the target at a glance: an arrow turned to the bearing, the distance large with
// its unit, the bearing in degrees; the long path and the contest distance under them, and the
// button that clears the target. A screen reader hears one sentence.
GridLayout {
    id: instrument

    required property TargetController target

    columns: 2
    columnSpacing: Theme.spacing
    rowSpacing: 0

    Image {
        Layout.rowSpan: 3
        Layout.alignment: Qt.AlignVCenter
        source: Theme.glyphSource("bearing", Theme.tintColor)
        sourceSize.width: 68
        sourceSize.height: 48
        rotation: instrument.target.bearing
        Accessible.ignored: true
    }
    SecondaryLabel {
        Layout.fillWidth: true
        text: instrument.target.toText
        Accessible.role: Accessible.StaticText
        Accessible.name: instrument.target.accessibilityLabel
    }
    Flow {
        Layout.fillWidth: true
        spacing: Theme.spacing / 2
        TitleLabel {
            text: instrument.target.distanceValue
            Accessible.ignored: true
        }
        Body2Label {
            height: parent.children[0].height
            verticalAlignment: Text.AlignBottom
            bottomPadding: 6
            text: instrument.target.distanceUnit
            Accessible.ignored: true
        }
        Body2Label {
            height: parent.children[0].height
            verticalAlignment: Text.AlignBottom
            bottomPadding: 6
            leftPadding: Theme.spacing
            text: instrument.target.bearingText
            color: Theme.tintColor
            Accessible.ignored: true
        }
    }
    SecondaryLabel {
        Layout.fillWidth: true
        text: instrument.target.secondaryText
        Accessible.ignored: true
    }
    Body1Button {
        Layout.row: 3
        Layout.column: 1
        Layout.alignment: Qt.AlignRight
        //: Button that removes the target
        //% "Clear Target"
        title: qsTrId("target.clear")
        onClicked: instrument.target.clearTarget()
    }
}
