import QtQuick
import Kestavon.Ui

/// What the screens that list scanned files have in common: header, divider, the table or what
/// stands in its place, the bar of the selection, and the dialogs before a removal.
Item {
    id: page

    required property FileTableState files
    required property ScanPanelState scan
    required property PathActions pathActions
    required property string title
    required property string subtitle
    /// Shown while there is nothing to list.
    required property string emptyMessage
    property alias controls: header.controls
    property alias columns: table.columns

    function focusRows() {
        table.focusRows();
    }

    PageHeader {
        id: header
        x: 28
        y: 22
        width: parent.width - 56
        title: page.title
        subtitle: page.subtitle
    }
    ScanNotice {
        id: notice
        x: 28
        anchors.top: header.bottom
        anchors.topMargin: visible ? 14 : 0
        width: parent.width - 56
        height: implicitHeight
        scan: page.scan
    }
    Hairline {
        id: divider
        anchors.top: notice.bottom
        anchors.topMargin: 18
        width: parent.width
    }
    NeedsScanView {
        anchors.top: divider.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: page.files.empty
        scan: page.scan
        title: "No scan data yet"
        message: page.emptyMessage
    }
    VirtualTable {
        id: table
        objectName: "fileTable"
        anchors.top: divider.bottom
        anchors.bottom: bar.top
        width: parent.width
        visible: !page.files.empty
        rows: page.files.rows
        pathActions: page.pathActions
        onTrashRequested: page.files.removal.askTrash()
        onDeleteRequested: page.files.removal.askDelete()
    }
    FileActionBar {
        id: bar
        objectName: "fileActionBar"
        anchors.bottom: parent.bottom
        width: parent.width
        shown: page.files.hasSelection
        summary: page.files.selectionSummary
        canRemove: page.files.canRemove
        onClear: {
            page.files.rows.clearSelection();
            table.focusRows();
        }
        onKeyboardLeft: table.focusRows()
        onTrash: page.files.removal.askTrash()
        onDeleteForever: page.files.removal.askDelete()
    }
    RemovalDialogs {
        removal: page.files.removal
        // What was asked about may be gone, and with it the button that had the keyboard.
        onAnswered: {
            if (!bar.shown)
                table.focusRows();
        }
    }
}
