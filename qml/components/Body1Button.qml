import Veltor

UnderlineButton {
    font: Theme.body1Font
}
