import QtQuick
import Kestavon.Ui

/// One visible row of a VirtualTable.
Item {
    id: line

    required property RecordTableModel rows
    required property list<TableColumn> columns
    /// Left edge and width of each column.
    required property var cells
    required property PathActions pathActions
    required property int row
    /// The table has the keyboard, and whether it was used.
    required property bool tableFocused
    required property bool ringShown

    /// The pointer went down on the row.
    signal pressed

    readonly property bool exists: row < rows.rowCount
    // The model's answers are asked anew whenever it says that they changed.
    readonly property bool selected: {
        rows.selectionRevision;
        return exists && rows.isSelected(row);
    }
    readonly property bool current: exists && rows.currentRow === row

    visible: exists

    Accessible.role: Accessible.Row
    Accessible.name: {
        rows.contentRevision;
        return exists ? rows.text(row, 0) : "";
    }
    Accessible.selectable: true
    Accessible.selected: selected
    Accessible.focusable: true
    Accessible.focused: current && tableFocused
    Accessible.onPressAction: rows.click(row, Qt.NoModifier)
    AccessibleRow {
        row: line.row
        focused: line.current && line.tableFocused
        selected: line.selected
    }

    Rectangle {
        anchors.fill: parent
        visible: line.selected
        color: Theme.selectedRow
    }
    Rectangle {
        anchors.fill: parent
        visible: hover.hovered && !line.selected
        color: Theme.hover
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: line.selected ? Theme.selectedRowLine : Theme.hairline
    }
    Rectangle {
        visible: line.selected
        width: 3
        height: parent.height
        color: Theme.accent
    }
    Repeater {
        id: cellItems
        model: line.columns
        Item {
            id: cell
            required property int index
            required property TableColumn modelData
            readonly property string text: {
                line.rows.contentRevision;
                return line.exists ? line.rows.text(line.row, index) : "";
            }
            readonly property bool truncated: label.truncated
            x: line.cells[index].x
            width: line.cells[index].width
            height: line.height - 1
            Accessible.role: Accessible.Cell
            Accessible.name: text

            // Most cells have neither; a screen of rows is made at once when its section is opened.
            Loader {
                active: cell.modelData.symbol !== ""
                anchors.verticalCenter: parent.verticalCenter
                sourceComponent: SymbolIcon {
                    name: cell.modelData.symbol
                }
            }
            Loader {
                active: cell.modelData.barWidth > 0
                anchors.fill: parent
                sourceComponent: Item {
                    Rectangle {
                        readonly property real share: {
                            line.rows.contentRevision;
                            return line.exists ? line.rows.sizeShare(line.row) : 0;
                        }
                        visible: share > 0.01
                        anchors.verticalCenter: parent.verticalCenter
                        anchors.right: parent.right
                        anchors.rightMargin: cell.modelData.barTextWidth + 10
                        width: Math.max(3, cell.modelData.barWidth * share)
                        height: 4
                        radius: 2
                        color: Theme.tint(Theme.accent, 0.5)
                    }
                }
            }
            AppText {
                id: label
                x: cell.modelData.symbol !== "" ? 24 : 0
                width: parent.width - x
                anchors.verticalCenter: parent.verticalCenter
                text: cell.text
                weight: cell.modelData.strong ? 500 : 400
                color: cell.modelData.secondary ? Theme.text2 : Theme.text
                elide: Text.ElideMiddle
                horizontalAlignment: cell.modelData.alignRight ? Text.AlignRight : Text.AlignLeft
                Accessible.ignored: true
            }
        }
    }
    Loader {
        id: tip
        /// The cell under the pointer, when it does not show its whole text.
        readonly property var cut: {
            for (let i = 0; hover.hovered && i < cellItems.count; ++i) {
                const cell = cellItems.itemAt(i);
                if (cell.truncated && cell.x <= hover.point.position.x && hover.point.position.x < cell.x + cell.width)
                    return cell;
            }
            return null;
        }
        active: cut !== null
        sourceComponent: AppToolTip {
            parent: tip.cut
            text: tip.cut ? tip.cut.text : ""
            visible: true
        }
    }
    FocusRing {
        visible: line.current && line.ringShown || pathMenu.open
        anchors.fill: parent
        anchors.margins: 0
        anchors.leftMargin: 3
        anchors.rightMargin: 3
        anchors.bottomMargin: 1
        radius: 6
    }
    HoverHandler {
        id: hover
    }
    PathMenuArea {
        id: pathMenu
        actions: line.pathActions
        path: {
            line.rows.contentRevision;
            return line.exists ? line.rows.filePath(line.row) : null;
        }
        focused: line.current && line.tableFocused
    }
    TapHandler {
        acceptedModifiers: Qt.KeyboardModifierMask
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onPressedChanged: {
            if (pressed)
                line.pressed();
        }
        onTapped: line.rows.click(line.row, point.modifiers)
    }
}
