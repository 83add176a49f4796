import QtQuick
import Kestavon.Ui

/// The applications that run, those with most memory first.
SectionScreen {
    id: screen

    readonly property ProcessesState processes: ui.processes
    /// Where the figures end.
    readonly property real memoryEdge: width - 308

    function focusFilter() {
        search.forceActiveFocus(Qt.ShortcutFocusReason);
    }

    Component.onCompleted: processes.begin()
    Timer {
        objectName: "refreshing"
        running: screen.onScreen
        repeat: true
        triggeredOnStart: true
        interval: 3000
        onTriggered: screen.processes.refresh()
    }

    PageHeader {
        id: header
        x: 28
        y: 22
        width: parent.width - 56
        title: "Running Processes"
        AppTextField {
            id: search
            objectName: "processSearch"
            symbol: "magnifyingglass"
            placeholderText: "Search…"
            onTextChanged: screen.processes.filter = text
        }
    }
    Row {
        x: 28
        anchors.bottom: header.bottom
        spacing: 6
        Accessible.role: Accessible.StaticText
        Accessible.name: screen.processes.countText + " · sorted by memory"
        AppText {
            text: screen.processes.countText + " ·"
            color: Theme.text2
            Accessible.ignored: true
        }
        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            name: "arrow.down.circle.fill"
            size: 14
        }
        AppText {
            text: "sorted by memory"
            color: Theme.text2
            Accessible.ignored: true
        }
    }
    Rectangle {
        id: titles
        anchors.top: header.bottom
        anchors.topMargin: 18
        width: parent.width
        height: 33
        color: Theme.sunken
        Hairline {
            width: parent.width
        }
        AppText {
            x: 28
            anchors.verticalCenter: parent.verticalCenter
            text: "Process"
            role: AppText.Role.Caption
            weight: 500
            color: Theme.text2
            Accessible.role: Accessible.ColumnHeader
        }
        AppText {
            x: screen.memoryEdge - width
            anchors.verticalCenter: parent.verticalCenter
            text: "Memory"
            role: AppText.Role.Caption
            weight: 500
            color: Theme.text2
            Accessible.role: Accessible.ColumnHeader
        }
        Hairline {
            anchors.bottom: parent.bottom
            width: parent.width
        }
    }
    Rectangle {
        anchors.fill: rows
        color: Theme.surface
    }
    VirtualList {
        id: rows
        objectName: "processes"
        anchors.top: titles.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        name: "Processes"
        pathActions: screen.ui.pathActions
        count: screen.processes.rowCount
        delegate: ProcessRow {
            list: rows
            processes: screen.processes
            memoryEdge: screen.memoryEdge
        }
    }
    AppText {
        anchors.horizontalCenter: rows.horizontalCenter
        y: rows.y + 40
        visible: !screen.processes.empty && screen.processes.filter !== ""
            && screen.processes.rowCount === 0
        text: "No matches"
        color: Theme.text2
    }
    EmptyState {
        objectName: "noProcesses"
        anchors.fill: rows
        visible: screen.processes.empty
        symbol: "terminal"
        title: "No running applications"
        message: "Applications appear here as soon as they are started."
    }
    ConfirmationDialogs {
        confirmation: screen.processes.confirmation
        errorTitle: "Could Not Quit"
    }
}
