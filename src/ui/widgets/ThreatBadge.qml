import QtQuick
import Kestavon.Ui

/// A threat level as a capsule.
Rectangle {
    id: badge

    required property string label
    required property string symbol
    /// A colour's name.
    required property string colorName

    implicitWidth: row.implicitWidth + 14
    implicitHeight: 20
    radius: 10
    color: Theme.tint(Theme.graphic(colorName), 0.15)

    Row {
        id: row
        x: 6
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4
        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            name: badge.symbol
            size: 13
            color: Theme.ink(badge.colorName)
        }
        AppText {
            anchors.verticalCenter: parent.verticalCenter
            text: badge.label
            role: AppText.Role.Micro
            color: Theme.ink(badge.colorName)
        }
    }
}
