import QtQuick
import Veltor

PickerPage {
    picker: controller
    //: Row and picker title for the latitude and longitude notation
    //% "Coordinates"
    title: qsTrId("settings.coordinate-format")

    CoordinateFormatSettingsViewController {
        id: controller
    }
}
