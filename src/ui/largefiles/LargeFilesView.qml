import QtQuick
import Kestavon.Ui

/// The hundred largest files.
SectionScreen {
    id: screen

    readonly property LargeFilesState largeFiles: ui.largeFiles

    FileTablePage {
        anchors.fill: parent
        files: screen.largeFiles
        scan: screen.ui.scanPanel
        pathActions: screen.ui.pathActions
        title: "Large Files"
        subtitle: "Top 100 files by size"
        emptyMessage: "Scan your Mac to find the largest files eating up your storage."
        columns: [
            TableColumn {
                title: "File"
                stretch: 1.1
                strong: true
                symbol: "doc.fill"
            },
            TableColumn {
                title: "Size"
                width: 140
                alignRight: true
                barWidth: 52
            },
            TableColumn {
                title: "Path"
                stretch: 1.7
                secondary: true
            }
        ]
    }
    Component.onDestruction: largeFiles.reset()
}
