import QtQuick
import Veltor

// One edge of the cell's square: solid where it is the nearest edge, dashed where the fix's
// accuracy reaches over it, nothing otherwise.
Canvas {
    id: edge

    property bool vertical: false
    property bool nearest: false
    property bool uncertain: false
    property color color: Theme.tintColor

    visible: nearest || uncertain
    onNearestChanged: requestPaint()
    onUncertainChanged: requestPaint()
    onColorChanged: requestPaint()

    onPaint: {
        const context = getContext("2d")
        context.reset()
        context.fillStyle = edge.color
        const length = edge.vertical ? height : width
        const dashes = edge.uncertain ? 6 : 1
        const step = length / dashes
        const dash = edge.uncertain ? step * 0.6 : step
        for (let i = 0; i < dashes; ++i) {
            if (edge.vertical)
                context.fillRect(0, i * step, width, dash)
            else
                context.fillRect(i * step, 0, dash, height)
        }
    }
}
