import QtQuick
import Kestavon.Ui

/// One visible row of a VirtualList. It keeps its row while that is in view.
FocusScope {
    id: line

    required property VirtualList list
    required property int index
    /// What the row shows, for screen readers.
    required property string label

    readonly property int row: list.firstRow + (index - list.firstRow % list.slots + list.slots) % list.slots
    readonly property bool exists: row < list.count
    readonly property bool current: exists && list.currentRow === row
    /// The keyboard is on the row.
    readonly property bool ringShown: current && list.visualFocus

    visible: exists
    width: list.width
    height: list.rowHeight
    y: row * list.rowHeight - list.offset

    Accessible.role: Accessible.ListItem
    Accessible.name: label
    Accessible.focusable: true
    Accessible.focused: current && list.activeFocus

    // What had the keyboard here belongs to another row now.
    onRowChanged: {
        if (activeFocus)
            list.forceActiveFocus(Qt.OtherFocusReason);
    }

    Hairline {
        x: 18
        anchors.bottom: parent.bottom
        visible: line.row < line.list.count - 1
        width: parent.width - 36
    }
}
