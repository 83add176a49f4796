import QtQuick
import Kestavon.Ui

/// The ring around `control` while the keyboard is on it, 2 px outside its edge. Give it the
/// control's own radius; a negative `gap` draws it inside.
Rectangle {
    property int gap: 2
    property real controlRadius: 8

    anchors.fill: parent
    anchors.margins: -(gap + 2)
    radius: controlRadius + (gap > 0 ? 3 : 0)
    color: "transparent"
    border.width: 2
    border.color: Theme.accent
    Accessible.ignored: true
}
