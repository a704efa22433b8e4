import Veltor

UnderlineButton {
    font: Theme.titleFont
}
