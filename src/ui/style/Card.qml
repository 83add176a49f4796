import QtQuick
import Kestavon.Ui

/// The white surface that groups what belongs together.
Rectangle {
    radius: 12
    color: Theme.surface
    border.width: 1
    border.color: Theme.hairline
}
