import QtQuick
import Veltor

PickerPage {
    picker: controller

    VeltorFormatSettingsViewController {
        id: controller
    }
}
