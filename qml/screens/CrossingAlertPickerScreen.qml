import QtQuick
import Veltor

PickerPage {
    picker: controller
    //: Row and picker title: at which locator precision entering another cell is announced
    //% "Crossing alerts"
    title: qsTrId("settings.crossing-alert")

    CrossingAlertSettingsViewController {
        id: controller
    }
}
