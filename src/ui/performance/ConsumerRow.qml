import QtQuick
import Kestavon.Ui

/// One of the applications that take most memory.
Item {
    id: line

    required property PerformanceState performance
    required property int row
    property bool divided: true

    /// Asks the list again whenever it has changed.
    readonly property var shown: {
        performance.revision;
        return {
            name: performance.nameText(row),
            memory: performance.memoryText(row),
            icon: performance.icon(row),
            share: performance.share(row),
            large: performance.isLarge(row)
        };
    }

    implicitHeight: 36
    Accessible.role: Accessible.ListItem
    Accessible.name: shown.name + ", " + shown.memory

    AppIcon {
        anchors.verticalCenter: parent.verticalCenter
        icon: line.shown.icon
        size: 24
    }
    ElidedText {
        x: 36
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, bar.x - x - 16)
        text: line.shown.name
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    Rectangle {
        id: bar
        anchors.right: figure.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: 80
        height: 6
        radius: 3
        color: Theme.track
        Rectangle {
            visible: line.shown.share > 0
            width: Math.max(3, parent.width * line.shown.share)
            height: parent.height
            radius: Math.min(3, width / 2)
            color: Theme.accent
        }
    }
    AppText {
        id: figure
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: 70
        horizontalAlignment: Text.AlignRight
        text: line.shown.memory
        weight: line.shown.large ? 600 : 400
        color: line.shown.large ? Theme.ink("orange") : Theme.text2
        Accessible.ignored: true
    }
    Hairline {
        anchors.bottom: parent.bottom
        width: parent.width
        visible: line.divided
    }
}
