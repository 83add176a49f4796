import QtQuick
import Kestavon.Ui

/// One visible row of a VirtualList. It keeps its row while that is in view.
FocusScope {
    id: line

    required property VirtualList list
    required property int index
    /// What the row shows, for screen readers.
    required property string label
    /// A FilePath, where the row shows one, and where what it names lies now, if elsewhere.
    property var path
    property var itemPath: path
    /// A line parts the row from the next one.
    property bool divided: true

    readonly property int row: list.firstRow + (index - list.firstRow % list.slots + list.slots) % list.slots
    readonly property bool exists: row < list.count
    readonly property bool current: exists && list.currentRow === row
    /// The keyboard is on the row, or its menu is open.
    readonly property bool ringShown: current && list.visualFocus || pathMenu.open

    visible: exists
    width: list.width
    height: list.rowHeight
    y: list.rowTop(row) - list.offset

    Accessible.role: Accessible.ListItem
    Accessible.name: label
    Accessible.focusable: true
    Accessible.focused: current && list.activeFocus
    AccessibleRow {
        row: line.row
        focused: line.current && line.list.activeFocus
    }

    // What had the keyboard here belongs to another row now.
    onRowChanged: {
        if (activeFocus)
            list.forceActiveFocus(Qt.OtherFocusReason);
    }

    Connections {
        target: line.list
        function onOpened(row: int) {
            if (line.exists && row === line.row && pathMenu.offered)
                line.list.pathActions.open(line.itemPath);
        }
    }
    PathMenuArea {
        id: pathMenu
        actions: line.list.pathActions
        path: line.path
        itemPath: line.itemPath
        focused: line.current && line.list.activeFocus
    }
    Hairline {
        x: 18
        anchors.bottom: parent.bottom
        visible: line.divided && line.row < line.list.count - 1
        width: parent.width - 36
    }
}
