import QtQuick
import Kestavon.Ui

/// Every scanned file and folder, largest first.
SectionScreen {
    id: screen

    readonly property StorageState storage: ui.storage

    function focusFilter() {
        filter.forceActiveFocus(Qt.ShortcutFocusReason);
        filter.selectAll();
    }

    FileTablePage {
        id: page
        anchors.fill: parent
        files: screen.storage
        scan: screen.ui.scanPanel
        pathActions: screen.ui.pathActions
        title: "Storage"
        subtitle: screen.storage.subtitle
        emptyMessage: "Scan your Mac to see every file and folder sorted by size."
        controls: AppTextField {
            id: filter
            objectName: "filterField"
            placeholderText: "Filter…"
            Accessible.name: "Filter"
            onTextChanged: screen.storage.searchText = text
            Keys.onDownPressed: page.focusRows()
            Keys.onReturnPressed: page.focusRows()
            Keys.onEnterPressed: page.focusRows()
        }
        columns: [
            TableColumn {
                title: "Name"
                stretch: 1
                strong: true
            },
            TableColumn {
                title: "Size"
                width: 126
                alignRight: true
                barWidth: 44
            },
            TableColumn {
                title: "Modified"
                width: 152
                secondary: true
            },
            TableColumn {
                title: "Path"
                stretch: 1.5
                secondary: true
            }
        ]
    }
    Component.onDestruction: storage.reset()
}
