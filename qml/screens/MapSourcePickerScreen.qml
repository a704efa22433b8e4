import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Veltor

// Where the map comes from, with the path of a map file and the address of a tile server.
FocusScope {
    id: page

    signal backRequested()

    focus: true
    Keys.onEscapePressed: page.backRequested()
    Keys.onBackPressed: page.backRequested()

    MapSourceSettingsViewController {
        id: controller
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0
        RowLayout {
            Layout.fillWidth: true
            UnderlineButton {
                title: controller.backTitle
                font: Theme.body1Font
                onClicked: page.backRequested()
            }
            Body2Label {
                Layout.fillWidth: true
                text: controller.title
                horizontalAlignment: Text.AlignHCenter
            }
            Item {
                implicitWidth: Theme.minimumTouchSize
            }
        }
        Flickable {
            Layout.fillWidth: true
            Layout.fillHeight: true
            contentHeight: rows.implicitHeight
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar {}

            ColumnLayout {
                id: rows
                width: parent.width
                spacing: Theme.hairline(Screen.devicePixelRatio)
                Repeater {
                    model: controller.choices
                    ChoiceRow {
                        required property FormatChoice modelData
                        Layout.fillWidth: true
                        text: modelData.text
                        accessibilityLabel: modelData.text
                        checked: modelData.checked
                        onClicked: modelData.select()
                    }
                }
                SettingsTextField {
                    Layout.fillWidth: true
                    Layout.topMargin: Theme.spacing
                    value: controller.mbtilesPath
                    placeholder: controller.mbtilesPathTitle
                    error: controller.mbtilesError
                    accessibilityLabel: controller.mbtilesPathTitle
                    onSubmitted: text => controller.setMbtilesPath(text)
                }
                SettingsTextField {
                    Layout.fillWidth: true
                    Layout.topMargin: Theme.spacing
                    value: controller.customTemplate
                    placeholder: controller.customTemplateTitle
                    error: controller.customTemplateError
                    accessibilityLabel: controller.customTemplateTitle
                    onSubmitted: text => controller.setCustomTemplate(text)
                }
                SettingsTextField {
                    Layout.fillWidth: true
                    value: controller.customAttribution
                    placeholder: controller.customAttributionTitle
                    accessibilityLabel: controller.customAttributionTitle
                    onSubmitted: text => controller.setCustomAttribution(text)
                }
                CaptionLabel {
                    Layout.fillWidth: true
                    Layout.margins: Theme.spacing
                    text: controller.note
                    wrapMode: Text.Wrap
                }
            }
        }
    }
}
