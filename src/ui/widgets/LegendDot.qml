import QtQuick
import Kestavon.Ui

/// One entry of a bar's legend.
Item {
    id: entry

    /// A colour's name.
    required property string colorName
    required property string label
    /// The figure after it, if it is not part of the label.
    property string value

    implicitWidth: value === "" ? name.x + name.implicitWidth : figure.x + figure.implicitWidth
    implicitHeight: 16

    Rectangle {
        width: 8
        height: 8
        radius: 4
        anchors.verticalCenter: parent.verticalCenter
        color: Theme.graphic(entry.colorName)
    }
    AppText {
        id: name
        x: 14
        text: entry.label
        role: AppText.Role.Caption
        color: Theme.text2
        Accessible.name: entry.value === "" ? entry.label : entry.label + " " + entry.value
    }
    AppText {
        id: figure
        x: name.x + name.implicitWidth + 6
        visible: text !== ""
        text: entry.value
        role: AppText.Role.Caption
        weight: 600
        Accessible.ignored: true
    }
}
