import QtQuick
import Kestavon.Ui

/// One entry of a bar's legend.
Item {
    id: entry

    /// A colour's name.
    required property string colorName
    required property string label

    implicitWidth: text.x + text.implicitWidth
    implicitHeight: 16

    Rectangle {
        width: 8
        height: 8
        radius: 4
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.graphic(entry.colorName)
    }
    AppText {
        id: text
        x: 14
        text: entry.label
        role: AppText.Role.Caption
        color: Theme.text2
    }
}
