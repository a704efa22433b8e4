import QtQuick
import Veltor

PickerPage {
    picker: controller
    //: Row and picker title for the locator precision
    //% "Locator precision"
    title: qsTrId("settings.veltor-format")

    VeltorFormatSettingsViewController {
        id: controller
    }
}
