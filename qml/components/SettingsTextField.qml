import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Veltor

// A text field under a settings row (an address, a path, a URL). The text goes to the controller
// when editing ends (Enter, Tab or a tap elsewhere); the controller keeps it or says why not
// below the field. Without an error, a note there can say what became of the value.
ColumnLayout {
    id: field

    property string value
    property string placeholder
    property string error
    property string note
    property bool noteIsWarning: false
    property string accessibilityLabel

    signal submitted(string text)

    spacing: 0

    TextField {
        id: input
        Layout.fillWidth: true
        Layout.leftMargin: Theme.spacing
        Layout.rightMargin: Theme.spacing
        implicitHeight: Theme.minimumTouchSize
        text: field.value
        placeholderText: field.placeholder
        font: Theme.body1Font
        color: Theme.textColor
        inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText
        Accessible.name: field.accessibilityLabel
        Accessible.description: message.text
        background: Rectangle {
            color: Theme.keyFaceColor
            border.color: field.error.length > 0 ? Theme.warningColor : Theme.controlColor
        }
        onEditingFinished: field.submitted(input.text)
    }
    SecondaryLabel {
        id: message
        Layout.fillWidth: true
        Layout.leftMargin: Theme.spacing
        Layout.rightMargin: Theme.spacing
        visible: text.length > 0
        text: field.error.length > 0 ? field.error : field.note
        color: field.error.length > 0 || field.noteIsWarning ? Theme.warningColor
                                                             : Theme.secondaryTextColor
        wrapMode: Text.Wrap
    }
}
