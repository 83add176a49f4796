import QtQuick
import Kestavon.Ui

/// Everything that was done since the program started.
SectionScreen {
    id: screen

    readonly property HistoryState history: ui.history
    readonly property ActivityListModel events: history.events

    PageHeader {
        id: header
        x: 28
        y: 22
        width: parent.width - 56
        title: "History"
        subtitle: screen.history.countText
        AppButton {
            objectName: "clearHistory"
            visible: !screen.events.empty
            label: "Clear All"
            kind: AppButton.Kind.RedBordered
            onClicked: screen.history.clear()
        }
    }
    EmptyState {
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: screen.events.empty
        symbol: "clock.arrow.circlepath"
        title: "Nothing yet"
        message: "What you scan, clean and restore is listed here."
    }
    Card {
        x: 28
        anchors.top: header.bottom
        anchors.topMargin: 18
        width: parent.width - 56
        height: Math.min(rows.contentLength, rows.room) + 2
        visible: !screen.events.empty

        VirtualList {
            id: rows
            objectName: "events"
            anchors.fill: parent
            anchors.margins: 1
            room: screen.height - parent.y - 28 - 2
            name: "History"
            pathActions: screen.ui.pathActions
            count: screen.events.count
            delegate: VirtualListRow {
                id: line
                list: rows
                readonly property var shown: {
                    screen.events.revision;
                    return {
                        title: screen.events.titleText(row),
                        detail: screen.events.detailText(row),
                        age: screen.events.ageText(row),
                        path: screen.events.filePath(row)
                    };
                }
                path: shown.path
                label: [shown.title, shown.detail, shown.age].join(", ")
                ActivityRow {
                    x: 18
                    width: parent.width - 36
                    height: parent.height - 1
                    title: line.shown.title
                    detail: line.shown.detail
                    age: line.shown.age
                    path: null // the line offers it
                    pathActions: screen.ui.pathActions
                    Accessible.ignored: true
                }
                FocusRing {
                    anchors.margins: 0
                    anchors.fill: parent
                    anchors.leftMargin: 6
                    anchors.rightMargin: 6
                    anchors.topMargin: 3
                    anchors.bottomMargin: 4
                    visible: line.ringShown
                    radius: 8
                }
            }
        }
    }
    // The ages are kept current only while somebody can read them.
    Binding {
        target: screen.events
        property: "ticking"
        value: screen.visible
    }
    Component.onDestruction: events.ticking = false
}
