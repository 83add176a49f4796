import QtQuick
import Kestavon.Ui

/// The applications, with a line for each thing that those have left which are opened: by a click on
/// their number, Space, Return or the Right key.
Item {
    id: table

    required property UninstallerState uninstaller
    required property PathActions pathActions
    /// The height that the table may get.
    required property real room

    readonly property AppRows rows: uninstaller.rows
    /// The list has just changed, and the next one has come under the pointer: the second half of a
    /// double click must not be about that.
    readonly property bool isSettling: settling.running
    readonly property var titles: ["App", "Leftover Size", "Leftover Files", "Actions"]
    /// Left edge and width of each column.
    readonly property var cells: {
        const widths = [0, 130, 130, 270];
        const gap = 20;
        const padding = 28;
        widths[0] = Math.max(0, width - 2 * padding - widths.reduce((sum, each) => sum + each + gap, -gap));
        let x = padding;
        return widths.map(each => {
            const cell = { x: x, width: each };
            x += each + gap;
            return cell;
        });
    }

    function focusRows() {
        apps.forceActiveFocus(Qt.ShortcutFocusReason);
    }
    function open(row: int, wanted: bool) {
        apps.currentRow = rows.setOpen(row, wanted);
        apps.ensureVisible(apps.currentRow);
    }

    Timer {
        id: settling
        interval: 500
    }
    Connections {
        target: table.uninstaller
        function onAppsChanged() {
            settling.restart();
        }
        function onFilterChanged() {
            apps.scrollTo(0);
            apps.currentRow = apps.count > 0 ? 0 : -1;
        }
    }
    Rectangle {
        anchors.fill: parent
        color: Theme.surface
    }
    Rectangle {
        id: header
        width: parent.width
        height: 32
        color: Theme.sunken
        Repeater {
            model: table.titles
            AppText {
                required property int index
                required property string modelData
                x: table.cells[index].x
                width: table.cells[index].width
                anchors.verticalCenter: parent.verticalCenter
                anchors.verticalCenterOffset: -0.5
                text: modelData
                role: AppText.Role.Caption
                weight: 500
                color: Theme.text2
                horizontalAlignment: index > 0 ? Text.AlignRight : Text.AlignLeft
                Accessible.role: Accessible.ColumnHeader
            }
        }
        Hairline {
            anchors.bottom: parent.bottom
            width: parent.width
        }
    }
    VirtualList {
        id: apps
        objectName: "apps"

        function rowTop(row: int): real {
            table.rows.revision;
            return table.rows.rowTop(row);
        }
        function rowAt(position: real): int {
            table.rows.revision;
            return table.rows.rowAt(position);
        }

        anchors.fill: parent
        anchors.topMargin: header.height
        room: table.room - header.height
        rowHeight: table.rows.leftoverHeight
        name: "Apps"
        pathActions: table.pathActions
        count: table.rows.rowCount
        onToggled: row => table.open(row, !table.rows.isOpen(row))
        onRemovalRequested: row => table.uninstaller.askUninstall(row)
        Keys.onReturnPressed: table.open(currentRow, !table.rows.isOpen(currentRow))
        Keys.onEnterPressed: table.open(currentRow, !table.rows.isOpen(currentRow))
        Keys.onRightPressed: table.open(currentRow, true)
        Keys.onLeftPressed: table.open(currentRow, false)
        delegate: AppRow {
            list: apps
            rows: table.rows
            cells: table.cells
            settled: !table.isSettling
            onOpened: table.rows.toggle(row)
            onRemoveLeftovers: table.uninstaller.removeLeftovers(row)
            onUninstall: table.uninstaller.askUninstall(row)
        }
    }
}
