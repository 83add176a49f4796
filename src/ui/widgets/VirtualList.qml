import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// A list of any number of rows, all of one height, of which only the visible ones exist as items:
/// VirtualListRows made by `delegate`, each told which row it shows.
///
/// The scrolled distance is kept as one number in double precision and no item ever stands at a
/// large coordinate. One stop of the Tab key: the arrows move the current row, and controls in that
/// row come next.
T.Control {
    id: list

    required property int count
    required property Component delegate
    property real rowHeight: 52
    /// The most height that the list may get: rows for it are made once and kept.
    property real room: height
    required property PathActions pathActions
    /// What the list holds, for screen readers.
    required property string name

    /// The row the keys move from; -1 while there is none.
    property int currentRow: count > 0 ? 0 : -1
    /// How far the rows are scrolled, in pixels.
    property real offset: 0
    readonly property int accessibleRole: Accessible.List
    readonly property real contentLength: count * rowHeight
    readonly property real maxOffset: Math.max(0, contentLength - height)
    readonly property int firstRow: Math.floor(offset / rowHeight)
    readonly property int slots: Math.max(1, Math.ceil(room / rowHeight) + 1)

    /// Space on a row.
    signal toggled(row: int)
    signal allRequested

    function scrollTo(position: real) {
        offset = Math.max(0, Math.min(maxOffset, position));
    }
    function ensureVisible(row: int) {
        if (row * rowHeight < offset)
            scrollTo(row * rowHeight);
        else if ((row + 1) * rowHeight > offset + height)
            scrollTo((row + 1) * rowHeight - height);
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
    onCountChanged: currentRow = Math.min(Math.max(currentRow, 0), count - 1)

    clip: true
    focusPolicy: Qt.TabFocus
    Accessible.role: accessibleRole
    Accessible.name: name

    Keys.onPressed: event => {
        const page = Math.max(1, Math.floor(height / rowHeight) - 1);
        const step = {
            [Qt.Key_Down]: 1,
            [Qt.Key_Up]: -1,
            [Qt.Key_PageDown]: page,
            [Qt.Key_PageUp]: -page,
            [Qt.Key_End]: count,
            [Qt.Key_Home]: -count
        }[event.key];
        if (step !== undefined && count > 0) {
            takeFocus(Qt.TabFocusReason); // from here on the keyboard is in use
            currentRow = Math.max(0, Math.min(count - 1, currentRow + step));
            ensureVisible(currentRow);
        } else if (event.matches(StandardKey.SelectAll)) {
            allRequested();
        } else if (event.key === Qt.Key_Space && currentRow >= 0) {
            focusReason = Qt.TabFocusReason;
            toggled(currentRow);
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
        model: list.slots
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
