import QtQuick.Controls.Basic
import Veltor

Label {
    color: Theme.textColor
    font: Theme.body2Font
}
