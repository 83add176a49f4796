import QtQuick
import Kestavon.Ui

/// The groups of duplicates below each other, each on a card. Only what is in sight exists: the
/// rows of the list, and the cards below them.
VirtualList {
    id: groups

    required property DuplicateRows rows
    /// Room between the cards and the right edge, where the scroll bar is.
    property real rightMargin: 0

    readonly property real cardWidth: width - rightMargin
    readonly property int firstGroup: {
        rows.revision;
        return rows.groupAt(offset);
    }

    function rowTop(row: int): real {
        rows.revision;
        return rows.rowTop(row);
    }
    function rowAt(position: real): int {
        rows.revision;
        return rows.rowAt(position);
    }

    name: "Duplicate groups"
    rowHeight: rows.fileHeight
    count: rows.rowCount
    delegate: DuplicateRow {
        list: groups
        rows: groups.rows
        width: groups.cardWidth
    }

    Repeater {
        model: SlotModel {
            id: cards
            needed: Math.ceil(groups.room / groups.rows.lowestGroup) + 1
        }
        delegate: DuplicateGroupCard {
            required property int index
            rows: groups.rows
            // The one of the visible groups that falls on this slot.
            group: groups.firstGroup + (index - groups.firstGroup % cards.count + cards.count) % cards.count
            offset: groups.offset
            listHeight: groups.height
            width: groups.cardWidth
        }
    }
}
