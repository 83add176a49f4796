import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// A list of any number of rows, of which only the visible ones exist as items: VirtualListRows made
/// by `delegate`, each told which row it shows. Rows are `rowHeight` high; where they differ, a list
/// says so by its own `rowTop` and `rowAt`, and `rowHeight` is the least.
///
/// The scrolled distance is kept as one number in double precision and no item ever stands at a
/// large coordinate. One stop of the Tab key: the arrows move the current row, and controls in that
/// row come next.
T.Control {
    id: list

    required property int count
    required property Component delegate
    property real rowHeight: 52
    /// The most height that the list may get: items for as many rows are made.
    property real room: height
    required property PathActions pathActions
    /// What the list holds, for screen readers.
    required property string name

    /// The row the keys move from; -1 while there is none.
    property int currentRow: count > 0 ? 0 : -1
    /// There may be rows and none of them current.
    property bool mayHaveNoRow: false
    /// How far the rows are scrolled, in pixels.
    property real offset: 0
    readonly property int accessibleRole: Accessible.List
    readonly property real contentLength: list.rowTop(count)
    readonly property real maxOffset: Math.max(0, contentLength - height)
    readonly property int firstRow: list.rowAt(offset)
    /// The items that there are for rows.
    readonly property int slots: items.count

    /// Space on a row.
    signal toggled(row: int)
    signal allRequested
    /// Return on a row: what it shows is opened.
    signal opened(row: int)
    /// Delete; with Shift, for good.
    signal removalRequested(row: int, forGood: bool)

    /// Where the row begins, in pixels from the first; for `count`, where the last one ends.
    function rowTop(row: int): real {
        return row * rowHeight;
    }
    function rowAt(position: real): int {
        return Math.floor(position / rowHeight);
    }
    function scrollTo(position: real) {
        offset = Math.max(0, Math.min(maxOffset, position));
    }
    function ensureVisible(row: int) {
        const top = list.rowTop(row);
        const bottom = list.rowTop(row + 1);
        if (top < offset)
            scrollTo(top);
        else if (bottom > offset + height)
            scrollTo(bottom - height);
    }
    function takeFocus(reason: int) {
        forceActiveFocus(reason);
        focusReason = reason; // it may have had the keyboard already
    }
    /// The pointer chose a row: the keys go on from there.
    function choose(row: int) {
        takeFocus(Qt.MouseFocusReason);
        currentRow = row;
    }

    onMaxOffsetChanged: scrollTo(offset)
    onCountChanged: currentRow = Math.min(Math.max(currentRow, mayHaveNoRow ? -1 : 0), count - 1)

    clip: true
    focusPolicy: Qt.TabFocus
    Accessible.role: accessibleRole
    Accessible.name: name

    Keys.onPressed: event => {
        const page = height - rowHeight;
        const target = {
            [Qt.Key_Down]: () => currentRow + 1,
            [Qt.Key_Up]: () => currentRow - 1,
            [Qt.Key_PageDown]: () => Math.max(currentRow + 1, list.rowAt(list.rowTop(currentRow) + page)),
            [Qt.Key_PageUp]: () => Math.min(currentRow - 1, list.rowAt(list.rowTop(currentRow) - page)),
            [Qt.Key_End]: () => count - 1,
            [Qt.Key_Home]: () => 0
        }[event.key];
        if (target !== undefined && count > 0) {
            takeFocus(Qt.TabFocusReason); // from here on the keyboard is in use
            currentRow = Math.max(0, Math.min(count - 1, target()));
            ensureVisible(currentRow);
        } else if (event.matches(StandardKey.SelectAll)) {
            allRequested();
        } else if (event.key === Qt.Key_Space && currentRow >= 0) {
            focusReason = Qt.TabFocusReason;
            toggled(currentRow);
        } else if ((event.key === Qt.Key_Return || event.key === Qt.Key_Enter) && !event.isAutoRepeat
                && currentRow >= 0) {
            ensureVisible(currentRow);
            opened(currentRow);
        } else if (event.key === Qt.Key_Delete && !event.isAutoRepeat && currentRow >= 0
                && (event.modifiers === Qt.NoModifier || event.modifiers === Qt.ShiftModifier)) {
            removalRequested(currentRow, event.modifiers === Qt.ShiftModifier);
        } else {
            return;
        }
        event.accepted = true;
    }

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => list.scrollTo(list.offset
            - (event.pixelDelta.y !== 0 ? event.pixelDelta.y : event.angleDelta.y / 120 * 2 * list.rowHeight))
    }
    Repeater {
        model: SlotModel {
            id: items
            needed: Math.ceil(list.room / list.rowHeight) + 1
        }
        delegate: list.delegate
    }
    AppScrollBar {
        id: scrollBar
        z: 1
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        orientation: Qt.Vertical
        size: Math.min(1, list.height / Math.max(1, list.contentLength))
        onPositionChanged: {
            if (pressed)
                list.scrollTo(position * list.contentLength);
        }
        Binding on position {
            when: !scrollBar.pressed
            restoreMode: Binding.RestoreNone
            value: list.contentLength > 0 ? list.offset / list.contentLength : 0
        }
    }
}
