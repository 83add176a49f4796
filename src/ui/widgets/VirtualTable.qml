import QtQuick
import Kestavon.Ui

/// A table of any number of rows, of which only the visible ones exist as items.
///
/// The scrolled distance is kept as one number in double precision and no item ever stands at a
/// large coordinate: a row a hundred million pixels down is drawn as sharp as the first. Each slot
/// keeps its row while that is in view, so that scrolling by a row fills one slot anew and moves
/// the others.
Item {
    id: table

    required property RecordTableModel rows
    required property list<TableColumn> columns
    required property PathActions pathActions
    /// What the table holds, for screen readers.
    property string name: "Files"
    property real rowHeight: 34

    readonly property real sidePadding: 28
    readonly property real columnGap: 20
    /// Left edge and width of each column.
    readonly property var cells: {
        let fixed = 2 * sidePadding + (columns.length - 1) * columnGap;
        let shares = 0;
        for (let i = 0; i < columns.length; ++i) {
            fixed += columns[i].width;
            shares += columns[i].stretch;
        }
        const share = Math.max(0, width - fixed) / Math.max(1, shares);
        const result = [];
        let x = sidePadding;
        for (let i = 0; i < columns.length; ++i) {
            const cellWidth = columns[i].width + columns[i].stretch * share;
            result.push({ x: x, width: cellWidth });
            x += cellWidth + columnGap;
        }
        return result;
    }

    /// How far the rows are scrolled, in pixels.
    property real offset: 0
    readonly property real contentLength: rows.rowCount * rowHeight
    readonly property real maxOffset: Math.max(0, contentLength - body.height)
    readonly property int firstRow: Math.floor(offset / rowHeight)
    readonly property int slots: items.count

    /// Delete was pressed, for the selected rows; the second with Shift.
    signal trashRequested
    signal deleteRequested

    /// The ring is shown only after the keyboard was used.
    property bool keyboardUsed: false

    function scrollTo(position: real) {
        offset = Math.max(0, Math.min(maxOffset, position));
    }
    function ensureVisible(row: int) {
        if (row < 0)
            return;
        if (row * rowHeight < offset)
            scrollTo(row * rowHeight);
        else if ((row + 1) * rowHeight > offset + body.height)
            scrollTo((row + 1) * rowHeight - body.height);
    }
    function focusRows() {
        body.forceActiveFocus(Qt.ShortcutFocusReason);
    }

    onMaxOffsetChanged: scrollTo(offset)

    /// The rows of another filter are on their way; they are shown from the top.
    property bool otherFilter: false
    Connections {
        target: table.rows
        function onFilterChanged() {
            table.otherFilter = true;
        }
        function onRowsChanged() {
            if (table.otherFilter)
                table.scrollTo(0);
            table.otherFilter = false;
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
        z: 1
        Repeater {
            model: table.columns
            AppText {
                required property int index
                required property var modelData
                x: table.cells[index].x
                width: table.cells[index].width
                anchors.verticalCenter: parent.verticalCenter
                anchors.verticalCenterOffset: -0.5
                text: modelData.title
                role: AppText.Role.Caption
                weight: 500
                color: Theme.text2
                elide: Text.ElideRight
                horizontalAlignment: modelData.alignRight ? Text.AlignRight : Text.AlignLeft
                Accessible.role: Accessible.ColumnHeader
            }
        }
        Hairline {
            anchors.bottom: parent.bottom
            width: parent.width
        }
    }
    Item {
        id: body
        objectName: "tableBody"
        anchors.fill: parent
        anchors.topMargin: header.height
        clip: true
        focus: true
        activeFocusOnTab: true
        Accessible.role: Accessible.Table
        Accessible.name: table.name
        Accessible.focusable: true
        Accessible.focused: activeFocus

        property real previousHeight: 0
        // When the action bar takes the table's last rows, the row just chosen stays in view.
        onHeightChanged: {
            const current = table.rows.currentRow;
            if (height < previousHeight && current >= 0
                    && (current + 1) * table.rowHeight <= table.offset + previousHeight + 1
                    && current * table.rowHeight >= table.offset)
                table.ensureVisible(current);
            previousHeight = height;
        }
        onActiveFocusChanged: {
            if (!activeFocus)
                table.keyboardUsed = false;
        }

        Keys.onPressed: event => {
            const page = Math.max(1, Math.floor(height / table.rowHeight) - 1);
            const count = table.rows.rowCount;
            const step = {
                [Qt.Key_Down]: 1,
                [Qt.Key_Up]: -1,
                [Qt.Key_PageDown]: page,
                [Qt.Key_PageUp]: -page,
                [Qt.Key_End]: count,
                [Qt.Key_Home]: -count
            }[event.key];
            if (step !== undefined)
                table.rows.move(step, event.modifiers);
            else if (event.matches(StandardKey.SelectAll))
                table.rows.selectAll();
            else if (event.key === Qt.Key_Space)
                table.rows.toggleCurrent();
            else if (event.key === Qt.Key_Escape && table.rows.hasSelection)
                table.rows.clearSelection();
            else if (event.key === Qt.Key_Delete && event.modifiers === Qt.NoModifier)
                table.trashRequested();
            else if (event.key === Qt.Key_Delete && event.modifiers === Qt.ShiftModifier)
                table.deleteRequested();
            else if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && !event.isAutoRepeat
                    && table.rows.currentRow >= 0)
                table.pathActions.open(table.rows.filePath(table.rows.currentRow));
            else
                return;
            event.accepted = true;
            table.keyboardUsed = true;
            if (step !== undefined)
                table.ensureVisible(table.rows.currentRow);
        }

        WheelHandler {
            acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
            onWheel: event => table.scrollTo(table.offset
                - (event.pixelDelta.y !== 0 ? event.pixelDelta.y : event.angleDelta.y / 120 * 3 * table.rowHeight))
        }

        Repeater {
            model: SlotModel {
                id: items
                needed: Math.ceil(body.height / table.rowHeight) + 1
            }
            VirtualTableRow {
                required property int index
                rows: table.rows
                columns: table.columns
                cells: table.cells
                pathActions: table.pathActions
                tableFocused: body.activeFocus
                ringShown: table.keyboardUsed && body.activeFocus
                width: body.width
                height: table.rowHeight
                y: row * table.rowHeight - table.offset
                onPressed: {
                    table.keyboardUsed = false;
                    body.forceActiveFocus(Qt.MouseFocusReason);
                }
                // The row that this slot shows: the one of the visible rows that falls on it.
                row: table.firstRow + (index - table.firstRow % table.slots + table.slots) % table.slots
            }
        }
    }
    AppScrollBar {
        id: scrollBar
        objectName: "tableScrollBar"
        anchors.right: parent.right
        anchors.top: body.top
        anchors.bottom: body.bottom
        orientation: Qt.Vertical
        size: Math.min(1, body.height / Math.max(1, table.contentLength))
        onPositionChanged: {
            if (pressed)
                table.scrollTo(position * table.contentLength);
        }
        Binding on position {
            when: !scrollBar.pressed
            restoreMode: Binding.RestoreNone
            value: table.contentLength > 0 ? table.offset / table.contentLength : 0
        }
    }
}
