import QtQuick
import Kestavon.Ui

/// A symbol on a rounded square tinted with its colour.
Rectangle {
    id: tile

    required property string symbol
    /// A colour's name, or set `tone`.
    property string colorName: "accent"
    property color tone: Theme.graphic(colorName)
    property int size: 36
    property int symbolSize: 20

    implicitWidth: size
    implicitHeight: size
    radius: size >= 44 ? 12 : 10
    color: Theme.tint(tone, 0.13)

    SymbolIcon {
        anchors.centerIn: parent
        name: tile.symbol
        size: tile.symbolSize
        color: tile.tone
    }
}
