import QtQuick
import Kestavon.Ui

/// What memory is used for, now and during the last minute, and who takes most of it.
SectionScreen {
    id: screen

    readonly property PerformanceState performance: ui.performance

    Timer {
        objectName: "refreshing"
        running: screen.onScreen
        repeat: true
        triggeredOnStart: true
        interval: 1000
        onTriggered: screen.performance.refresh()
    }

    /// The last minute of a card's figure, beside its symbol.
    component Trend: MemorySparkline {
        x: Math.round(parent.width * 0.49)
        y: 22
        width: parent.width - x - 12
        height: 33
        performance: screen.performance
        color: Theme.graphic((parent as MetricCard).accent)
        Accessible.ignored: true
    }

    PageFlickable {
        id: flick
        anchors.fill: parent
        contentHeight: content.height + 42

        Column {
            id: content
            x: 28
            y: 22
            width: flick.width - 56
            spacing: 14

            PageHeader {
                width: parent.width
                title: "Performance"
                subtitle: "Live macOS memory · updated every second"
                RAMOptimizerButton {
                    objectName: "ramOptimizer"
                    performance: screen.performance
                }
            }
            AppText {
                visible: !screen.performance.hasMemory
                text: "Memory statistics unavailable."
                color: Theme.text2
            }
            Item {
                id: cards
                width: parent.width
                height: 131
                visible: screen.performance.hasMemory
                readonly property real gap: 14
                /// Left edge of the card at `index`, on a whole pixel.
                function edge(index: int): real {
                    return Math.round(index * (width + gap) / 4);
                }
                MetricCard {
                    objectName: "freeMemory"
                    width: cards.edge(1) - cards.gap
                    title: "Free"
                    value: screen.performance.freeText
                    symbol: "memorychip"
                    accent: "green"
                    Trend { figure: MemorySparkline.Free }
                }
                MetricCard {
                    objectName: "activeMemory"
                    x: cards.edge(1)
                    width: cards.edge(2) - x - cards.gap
                    title: "Active"
                    value: screen.performance.activeText
                    symbol: "bolt.fill"
                    accent: "orange"
                    Trend { figure: MemorySparkline.Active }
                }
                MetricCard {
                    objectName: "wiredMemory"
                    x: cards.edge(2)
                    width: cards.edge(3) - x - cards.gap
                    title: "Wired"
                    value: screen.performance.wiredText
                    symbol: "lock.fill"
                    accent: "red"
                    Trend { figure: MemorySparkline.Wired }
                }
                MetricCard {
                    objectName: "inactiveMemory"
                    x: cards.edge(3)
                    width: cards.width - x
                    title: "Inactive"
                    value: screen.performance.inactiveText
                    symbol: "moon.fill"
                    accent: "blue"
                    Trend { figure: MemorySparkline.Inactive }
                }
            }
            MemoryBar {
                objectName: "memoryBar"
                width: parent.width
                height: 161
                visible: screen.performance.hasMemory
                memory: screen.ui.memoryBar
                AppText {
                    anchors.right: parent.right
                    anchors.rightMargin: 19
                    y: 72
                    text: "Last 60 seconds"
                    role: AppText.Role.Micro
                    weight: 400
                    color: Theme.text2
                }
                MemoryChart {
                    x: 19
                    y: 101
                    width: parent.width - 38
                    height: 44
                    performance: screen.performance
                    wiredColor: Theme.graphic("red")
                    activeColor: Theme.graphic("orange")
                    inactiveColor: Theme.graphic("blue")
                    trackColor: Theme.track
                    Accessible.ignored: true
                }
            }
            Card {
                width: parent.width
                height: list.height + 44
                Accessible.role: Accessible.List
                Accessible.name: "Top Memory Consumers"
                AppText {
                    x: 19
                    y: 13
                    text: "Top Memory Consumers"
                    role: AppText.Role.SectionTitle
                    Accessible.ignored: true
                }
                Column {
                    id: list
                    x: 19
                    y: 38
                    width: parent.width - 38
                    Repeater {
                        model: screen.performance.consumers
                        ConsumerRow {
                            id: consumer
                            required property int index
                            objectName: "consumer " + index
                            width: list.width
                            performance: screen.performance
                            row: consumer.index
                            divided: index < screen.performance.consumers - 1
                        }
                    }
                }
            }
        }
    }
}
