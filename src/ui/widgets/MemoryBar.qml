import QtQuick
import Kestavon.Ui

/// What the machine's memory is used for, as a card: a stacked bar and its legend.
Card {
    id: card

    required property MemoryBarState memory

    /// In use, of the whole, in percent; for screen readers.
    readonly property real value: Math.round((memory.wiredShare + memory.activeShare + memory.inactiveShare) * 100)
    readonly property real minimumValue: 0
    readonly property real maximumValue: 100

    implicitHeight: 104
    Accessible.role: Accessible.ProgressBar
    Accessible.name: "Memory Pressure"
    Accessible.description: memory.spokenText

    AppText {
        x: 19
        y: 17
        text: "Memory Pressure"
        role: AppText.Role.SectionTitle
        Accessible.ignored: true
    }
    // Free memory is the bare track.
    Rectangle {
        id: track
        x: 19
        y: 47
        width: parent.width - 38
        height: 14
        radius: 4
        color: Theme.track
        clip: true
        Row {
            spacing: 2
            Repeater {
                model: [
                    { share: card.memory.wiredShare, color: "red" },
                    { share: card.memory.activeShare, color: "orange" },
                    { share: card.memory.inactiveShare, color: "blue" }
                ]
                Rectangle {
                    required property var modelData
                    property real shownShare: modelData.share
                    visible: modelData.share > 0
                    width: Math.max(4, track.width * shownShare - 2)
                    height: 14
                    radius: 4
                    color: Theme.graphic(modelData.color)
                    Behavior on shownShare {
                        NumberAnimation { duration: Theme.growTime; easing.type: Easing.InOutQuad }
                    }
                }
            }
        }
    }
    Row {
        x: 19
        y: 71
        spacing: 20
        LegendDot { colorName: "red"; label: card.memory.wired }
        LegendDot { colorName: "orange"; label: card.memory.active }
        LegendDot { colorName: "blue"; label: card.memory.inactive }
        LegendDot { colorName: "green"; label: card.memory.free }
    }
}
