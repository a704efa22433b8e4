import QtQuick.Controls.Basic
import Veltor

// Text in the tint colour, keeping whatever font it is given.
Label {
    color: Theme.tintColor
}
