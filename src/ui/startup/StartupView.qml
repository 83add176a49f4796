import QtQuick
import Kestavon.Ui

/// What starts by itself: the user's own, which can be removed, and the system's.
SectionScreen {
    id: screen

    readonly property StartupState startup: ui.startup
    readonly property StartupRows rows: startup.rows
    readonly property bool empty: rows.rowCount === 0
    readonly property real cardWidth: width - 56
    /// The button that the list takes the place of has the keyboard.
    property bool keyboardIsOnScan: false

    PageHeader {
        id: header
        x: 28
        y: 22
        width: parent.width - 56
        title: "Startup Items"
        subtitle: "LaunchAgents and LaunchDaemons on your Mac — review and remove unwanted entries."
        AppButton {
            id: refresh
            objectName: "refreshStartup"
            label: "Refresh"
            symbol: "arrow.clockwise"
            busy: screen.startup.loading
            onClicked: screen.startup.load()
        }
    }
    EmptyState {
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: screen.empty
        symbol: "power.circle"
        title: "No startup items loaded"
        AppButton {
            id: scan
            objectName: "scanStartup"
            label: "Scan Startup Items"
            kind: AppButton.Kind.Prominent
            busy: screen.startup.loading
            onClicked: screen.startup.load()
        }
    }
    // When an item goes, the next one comes under the pointer: the second half of a double click
    // must not remove that too.
    Timer {
        id: settling
        objectName: "startupSettling"
        interval: 500
    }
    Connections {
        target: screen.rows
        function onReloaded() {
            settling.restart();
            screen.keyboardIsOnScan = scan.activeFocus;
        }
    }
    Hairline {
        anchors.top: items.top
        width: parent.width
        visible: items.visible && items.offset > 0
    }
    VirtualList {
        id: items
        objectName: "startupItems"

        function rowTop(row: int): real {
            screen.rows.revision;
            return screen.rows.rowTop(row);
        }
        function rowAt(position: real): int {
            screen.rows.revision;
            return screen.rows.rowAt(position);
        }

        x: 28
        anchors.top: header.bottom
        anchors.topMargin: 18
        anchors.bottom: parent.bottom
        width: parent.width - x
        room: screen.height - y
        visible: !screen.empty
        onVisibleChanged: {
            if (visible && screen.keyboardIsOnScan)
                forceActiveFocus(Qt.OtherFocusReason);
        }
        rowHeight: screen.rows.headingHeight
        name: "Startup items"
        pathActions: screen.ui.pathActions
        count: screen.rows.rowCount
        delegate: StartupRow {
            list: items
            rows: screen.rows
            width: screen.cardWidth
            settled: !settling.running
            onRemove: screen.startup.remove(row)
        }

        Repeater {
            model: 2
            // Drawn little further than it can be seen.
            Card {
                required property int index
                readonly property real beyond: 2 * radius
                readonly property real upperEdge: {
                    screen.rows.revision;
                    return screen.rows.cardTop(index) - 1 - items.offset;
                }
                readonly property real lowerEdge: {
                    screen.rows.revision;
                    return screen.rows.cardBottom(index) - items.offset;
                }
                z: -1
                y: Math.max(upperEdge, -beyond)
                width: screen.cardWidth
                height: Math.min(lowerEdge, items.height + beyond) - y
                visible: index < screen.rows.sectionCount && height > 0
            }
        }
    }
    ConfirmationDialogs {
        confirmation: screen.startup.confirmation
        errorTitle: "Error"
    }
}
