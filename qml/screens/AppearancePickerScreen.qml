import QtQuick
import Veltor

PickerPage {
    picker: controller
    //: Row and picker title for the appearance of the screens
    //% "Appearance"
    title: qsTrId("settings.appearance")

    AppearanceSettingsViewController {
        id: controller
    }
}
