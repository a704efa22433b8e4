import QtQuick
import Veltor

// Under the read-outs: what the receiver says of its fix, a warning when the live fix is stale or
// may lie in another cell, and where the point lies in its locator cell, each read out as one
// static text.
Column {
    id: view

    visible: position.shown || position.uncertain || age.stale || age.receiverText.length > 0
    spacing: 0

    GridPositionController {
        id: position
    }
    FixAgeController {
        id: age
    }

    CaptionLabel {
        width: view.width
        visible: text.length > 0
        text: age.receiverText
        Accessible.role: Accessible.StaticText
        Accessible.name: age.receiverAccessibilityLabel
    }
    TintLabel {
        width: view.width
        visible: age.stale
        text: age.text
        font: Theme.body2Font
        Accessible.role: Accessible.StaticText
        Accessible.name: age.accessibilityLabel
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
        // A stale fix is no longer where the user is: its distances are shown faded.
        opacity: age.stale ? 0.5 : 1.0
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
