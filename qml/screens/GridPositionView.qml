import QtQuick
import Veltor

// Under the read-outs: a warning when a live fix may lie in another cell, and where the point lies
// in its locator cell, each read out as one static text.
Column {
    id: view

    visible: position.shown || position.uncertain
    spacing: 0

    GridPositionController {
        id: position
    }

    TintLabel {
        width: view.width
        visible: position.uncertain
        text: position.uncertainText
        font: Theme.body2Font
        wrapMode: Text.Wrap
        Accessible.role: Accessible.StaticText
        Accessible.name: position.uncertainAccessibilityLabel
    }
    Column {
        width: view.width
        visible: position.shown
        Accessible.role: Accessible.StaticText
        Accessible.name: position.accessibilityLabel

        CaptionLabel {
            width: view.width
            text: position.edgesText
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        CaptionLabel {
            width: view.width
            text: position.nearestText
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
