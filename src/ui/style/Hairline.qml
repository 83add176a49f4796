import QtQuick
import Kestavon.Ui

/// The 1 px divider; stretch it along its other side.
Rectangle {
    implicitWidth: 1
    implicitHeight: 1
    color: Theme.hairline
}
