import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T
import Veltor

// What a first run needs to know, in three lines with the glyphs the user will meet, and one
// button that puts it away for good; Escape does the same. A card in the middle of the window,
// scrolling in a window too short for it.
Popup {
    id: card

    // Where the menu is, which depends on the window's width.
    property string menuText
    signal dismissed()

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(parent.width - 2 * Theme.spacing, 440)
    height: Math.min(parent.height - 2 * Theme.spacing, lessons.implicitHeight + 2 * padding)
    padding: Theme.spacing * 1.5
    modal: true
    focus: true
    closePolicy: Popup.CloseOnEscape
    onClosed: dismissed()

    background: Rectangle {
        radius: 12
        color: Theme.surfaceColor
        border.color: Theme.tintColor
    }
    T.Overlay.modal: Rectangle {
        color: Theme.scrimColor
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 200 }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: 150 }
    }

    Flickable {
        anchors.fill: parent
        contentHeight: lessons.implicitHeight
        clip: true
        boundsBehavior: Flickable.StopAtBounds

        ColumnLayout {
            id: lessons
            width: parent.width
            spacing: Theme.spacing

            TitleLabel {
                Layout.fillWidth: true
                //: Title of the card that teaches the first run
                //% "Welcome to Veltor"
                text: qsTrId("welcome.title")
                wrapMode: Text.Wrap
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            Repeater {
                model: [
                    //: First-run card: how to set the point on the map
                    //% "Press and hold the map to set the point there."
                    { glyph: "map", text: qsTrId("welcome.long-press") },
                    //: First-run card: what the tracking button does
                    //% "Track my position follows the GPS and keeps the point on your fix."
                    { glyph: "ToolbarIconTrack", text: qsTrId("welcome.track") },
                    { glyph: "menu", text: card.menuText }
                ]
                delegate: RowLayout {
                    id: lesson
                    required property var modelData
                    Layout.fillWidth: true
                    spacing: Theme.spacing
                    Image {
                        Layout.alignment: Qt.AlignTop
                        source: Theme.glyphSource(lesson.modelData.glyph, Theme.tintColor)
                        sourceSize.width: 34
                        sourceSize.height: 24
                        Accessible.ignored: true
                    }
                    Body1Label {
                        Layout.fillWidth: true
                        text: lesson.modelData.text
                        wrapMode: Text.Wrap
                        Accessible.role: Accessible.StaticText
                        Accessible.name: text
                    }
                }
            }
            WideButton {
                Layout.fillWidth: true
                //: Button that puts the first-run card away for good
                //% "Got It"
                title: qsTrId("welcome.dismiss")
                accessibilityLabel: title
                onClicked: card.close()
            }
        }
    }
}
