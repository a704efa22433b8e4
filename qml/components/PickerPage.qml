import QtQuick
import QtQuick.Layouts
import Veltor

// The page of a picker: Back and the title, then one row per choice.
FocusScope {
    id: page

    required property FormatPickerViewController picker
    required property string title

    signal backRequested()

    focus: true
    Keys.onEscapePressed: page.backRequested()
    Keys.onBackPressed: page.backRequested()

    // A swipe from the left edge goes back, as on a phone.
    DragHandler {
        id: swipe
        target: null
        xAxis.enabled: true
        yAxis.enabled: false
        onActiveChanged: {
            if (!active && Theme.isBackSwipe(centroid.pressPosition.x, translation.x))
                page.backRequested()
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0
        RowLayout {
            Layout.fillWidth: true
            UnderlineButton {
                //: Button that goes back from a picker to the settings
                //% "Back"
                title: qsTrId("general.back")
                font: Theme.body1Font
                // Back is never squeezed by a long title: the title wraps instead.
                Layout.minimumWidth: implicitWidth
                onClicked: page.backRequested()
            }
            Body2Label {
                Layout.fillWidth: true
                text: page.title
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                topPadding: Theme.spacing / 2
                bottomPadding: Theme.spacing / 2
            }
            Item {
                implicitWidth: Theme.minimumTouchSize
            }
        }
        Rectangle {
            Layout.fillWidth: true
            implicitHeight: choiceColumn.implicitHeight
            color: Theme.dividerColor
            Column {
                id: choiceColumn
                width: parent.width
                spacing: Theme.hairline(Screen.devicePixelRatio)
                Repeater {
                    model: page.picker.choices
                    ChoiceRow {
                        required property FormatChoice modelData
                        anchors.left: parent.left
                        anchors.right: parent.right
                        text: modelData.text
                        accessibilityLabel: modelData.accessibilityLabel
                        checked: modelData.checked
                        onClicked: modelData.select()
                    }
                }
            }
        }
        Item {
            Layout.fillHeight: true
        }
    }
}
