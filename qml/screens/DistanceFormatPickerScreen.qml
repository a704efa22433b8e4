import QtQuick
import Veltor

PickerPage {
    picker: controller
    //: Row and picker title for the units of every distance: accuracy, cell edges, target
    //% "Distance units"
    title: qsTrId("settings.distance-format")

    DistanceFormatSettingsViewController {
        id: controller
    }
}
