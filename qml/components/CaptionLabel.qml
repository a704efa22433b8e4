import QtQuick.Controls.Basic
import Veltor

Label {
    color: Theme.captionColor
    font: Theme.captionFont
}
