import QtQuick
import Kestavon.Ui

/// A card of items in the Safe Area. `room` is the most height that it may get.
Card {
    id: card

    required property HeldItems items
    required property string name
    required property PathActions pathActions
    required property real room
    /// The buttons may be pressed.
    property bool available: true
    /// The list has just changed: presses do not count yet.
    readonly property bool isSettling: settling.running
    readonly property real wantedHeight: rows.contentLength + 2

    signal restore(row: int)
    signal deleteForever(row: int)

    height: Math.min(wantedHeight, room)

    // When an item goes, the next one comes under the pointer: the second half of a double click
    // must not remove that too.
    Timer {
        id: settling
        interval: 500
    }
    Connections {
        target: card.items
        function onRowsChanged() {
            settling.restart();
        }
    }
    VirtualList {
        id: rows
        objectName: card.name
        anchors.fill: parent
        anchors.margins: 1
        room: card.room
        rowHeight: 78
        name: card.name
        pathActions: card.pathActions
        count: card.items.rowCount
        delegate: HeldItemRow {
            list: rows
            items: card.items
            available: card.available
            onRestore: {
                if (!card.isSettling)
                    card.restore(row);
            }
            onDeleteForever: {
                if (!card.isSettling)
                    card.deleteForever(row);
            }
        }
    }
}
