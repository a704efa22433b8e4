import QtQuick
import Veltor

PickerPage {
    picker: controller

    CrossingAlertSettingsViewController {
        id: controller
    }
}
