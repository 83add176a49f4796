import QtQuick
import Kestavon.Ui

/// Stands in for a section that this build has no screen for.
SectionScreen {
    id: screen

    EmptyState {
        anchors.fill: parent
        symbol: screen.ui.shell.sectionSymbol
        title: screen.ui.shell.sectionTitle
        message: "This section is not built yet."
    }
}
