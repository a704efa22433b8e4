import QtQuick
import Veltor

// Where the point lies in its locator cell, as a square of the cell: the distance to each edge
// on its side, the cell across the nearest edge beside it, the nearest corner marked; edges the
// fix's accuracy reaches over are drawn dashed. A screen reader hears one sentence.
Item {
    id: instrument

    required property GridPositionController position
    readonly property real squareWidth: 112
    readonly property real squareHeight: 80

    implicitWidth: Math.max(west.implicitWidth + east.implicitWidth + squareWidth + 4 * Theme.spacing,
                            detail.implicitWidth)
    implicitHeight: north.implicitHeight + squareHeight + south.implicitHeight + detail.implicitHeight
                    + 2 * Theme.spacing
    Accessible.role: Accessible.StaticText
    Accessible.name: instrument.position.accessibilityLabel

    // Sides as GridPositionController numbers them: north, south, east, west.
    function sideText(side: int): string {
        return instrument.position.edgeTexts.length > side ? instrument.position.edgeTexts[side] : ""
    }

    Rectangle {
        id: square
        x: (instrument.width - width) / 2
        y: north.implicitHeight + Theme.spacing / 2
        width: instrument.squareWidth
        height: instrument.squareHeight
        color: "transparent"
        border.color: Theme.controlColor
        border.width: 2

        Body2Label {
            anchors.centerIn: parent
            text: instrument.position.locator
            Accessible.ignored: true
        }
        // The nearest edge, thick in the tint colour; an edge the accuracy reaches over, dashed.
        CellEdge {
            y: -3
            width: square.width
            height: 6
            nearest: instrument.position.nearestSide === 0
            uncertain: instrument.position.uncertainSides & 1
        }
        CellEdge {
            y: square.height - 3
            width: square.width
            height: 6
            nearest: instrument.position.nearestSide === 1
            uncertain: instrument.position.uncertainSides & 2
        }
        CellEdge {
            x: square.width - 3
            width: 6
            height: square.height
            vertical: true
            nearest: instrument.position.nearestSide === 2
            uncertain: instrument.position.uncertainSides & 4
        }
        CellEdge {
            x: -3
            width: 6
            height: square.height
            vertical: true
            nearest: instrument.position.nearestSide === 3
            uncertain: instrument.position.uncertainSides & 8
        }
        // The nearest corner.
        Rectangle {
            id: cornerMark
            // 0 north-east, 1 north-west, 2 south-east, 3 south-west.
            readonly property int corner: instrument.position.nearestCorner
            width: 14
            height: 14
            radius: 7
            color: Theme.tintColor
            x: (cornerMark.corner % 2 === 0 ? square.width : 0) - width / 2
            y: (cornerMark.corner < 2 ? 0 : square.height) - height / 2
        }
    }

    Body1Label {
        id: north
        anchors.horizontalCenter: square.horizontalCenter
        anchors.top: parent.top
        text: instrument.sideText(0)
        Accessible.ignored: true
    }
    Body1Label {
        id: south
        anchors.horizontalCenter: square.horizontalCenter
        anchors.top: square.bottom
        anchors.topMargin: Theme.spacing / 2
        text: instrument.sideText(1)
        Accessible.ignored: true
    }
    Body1Label {
        id: east
        anchors.left: square.right
        anchors.leftMargin: Theme.spacing
        anchors.verticalCenter: square.verticalCenter
        text: instrument.sideText(2)
        Accessible.ignored: true
    }
    Body1Label {
        id: west
        anchors.right: square.left
        anchors.rightMargin: Theme.spacing
        anchors.verticalCenter: square.verticalCenter
        text: instrument.sideText(3)
        Accessible.ignored: true
    }
    SecondaryLabel {
        id: detail
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: south.bottom
        anchors.topMargin: Theme.spacing / 2
        width: Math.min(implicitWidth, instrument.width)
        horizontalAlignment: Text.AlignHCenter
        text: instrument.position.detailText
        Accessible.ignored: true
    }
}
