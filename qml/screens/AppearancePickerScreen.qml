import QtQuick
import Veltor

PickerPage {
    picker: controller

    AppearanceSettingsViewController {
        id: controller
    }
}
