import QtQuick
import Veltor

PickerPage {
    picker: controller

    CoordinateFormatSettingsViewController {
        id: controller
    }
}
