import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// The thumb over the right or bottom edge of what scrolls; gone when everything fits.
T.ScrollBar {
    id: bar

    implicitWidth: 16
    implicitHeight: 16
    padding: 3
    minimumSize: 0.04
    visible: size < 1
    hoverEnabled: true
    Accessible.name: horizontal ? "Scroll sideways" : "Scroll"

    contentItem: Item {
        implicitWidth: 10
        implicitHeight: 10
        Rectangle {
            readonly property int thickness: bar.hovered || bar.pressed ? 10 : 6
            x: bar.horizontal ? 0 : parent.width - width
            y: bar.horizontal ? parent.height - height : 0
            width: bar.horizontal ? parent.width : thickness
            height: bar.horizontal ? thickness : parent.height
            radius: thickness / 2
            color: bar.pressed ? Theme.tint(Theme.text, 0.42) : Theme.thumb
        }
    }
}
