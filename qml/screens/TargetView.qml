import QtQuick
import QtQuick.Layouts
import Veltor

// Distance and bearing to the target, under the read-outs while there is one, with the button
// that clears it.
RowLayout {
    id: view

    visible: target.shown
    spacing: Theme.spacing

    TargetController {
        id: target
    }

    CaptionLabel {
        Layout.fillWidth: true
        Layout.minimumWidth: 0
        text: target.text
        wrapMode: Text.Wrap
        Accessible.role: Accessible.StaticText
        Accessible.name: target.accessibilityLabel
    }
    Body1Button {
        //: Button that removes the target
        //% "Clear Target"
        title: qsTrId("target.clear")
        accessibilityLabel: title
        onClicked: target.clearTarget()
    }
}
