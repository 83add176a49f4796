import QtQuick
import Kestavon.Ui

/// The fill under a hovered or pressed row or plain button.
Rectangle {
    property bool hovered: false
    property bool pressed: false

    radius: 8
    color: pressed ? Theme.press : Theme.hover
    opacity: pressed || hovered ? 1 : 0
    visible: opacity > 0
    Behavior on opacity {
        NumberAnimation { duration: Theme.hoverTime }
    }
}
