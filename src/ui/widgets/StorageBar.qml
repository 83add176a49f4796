import QtQuick
import Kestavon.Ui

/// How full the disk is, as a card.
Card {
    id: card

    required property DiskBarState disk

    /// Of the whole, in percent; for screen readers.
    readonly property real value: Math.round(disk.fill * 100)
    readonly property real minimumValue: 0
    readonly property real maximumValue: 100

    implicitHeight: 104
    Accessible.role: Accessible.ProgressBar
    Accessible.name: "Disk Usage"
    Accessible.description: usedLine.text + usedWord.text + ", " + freeLine.text

    AppText {
        x: 19
        y: 17
        text: "Disk Usage"
        role: AppText.Role.SectionTitle
        Accessible.ignored: true
    }
    ShadedBar {
        x: 19
        y: 47
        width: parent.width - 38
        fill: card.disk.fill
        tone: Theme.graphic(card.disk.color)
    }
    AppText {
        id: usedLine
        x: 19
        y: 71
        text: card.disk.used
        role: AppText.Role.Caption
        weight: 600
    }
    AppText {
        id: usedWord
        anchors.left: usedLine.right
        y: 71
        text: " used"
        role: AppText.Role.Caption
        color: Theme.text2
    }
    AppText {
        id: freeLine
        anchors.right: parent.right
        anchors.rightMargin: 19
        y: 71
        text: card.disk.free
        role: AppText.Role.Caption
        color: Theme.text2
    }
}
