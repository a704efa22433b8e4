import QtQuick
import Veltor

PickerPage {
    picker: controller

    DistanceFormatSettingsViewController {
        id: controller
    }
}
