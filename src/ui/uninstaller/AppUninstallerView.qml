import QtQuick
import Kestavon.Ui

/// The installed applications with what they have left in the home, and their removal.
SectionScreen {
    id: screen

    readonly property UninstallerState uninstaller: ui.uninstaller

    function focusFilter() {
        if (search.visible)
            search.forceActiveFocus(Qt.ShortcutFocusReason);
    }

    Component.onDestruction: uninstaller.reset()

    PageHeader {
        id: header
        x: 28
        y: 22
        width: parent.width - 56
        title: "App Uninstaller"
        subtitle: screen.uninstaller.subtitle
        subtitleIsStatus: true
        busy: screen.uninstaller.loading
        AppTextField {
            id: search
            objectName: "appSearch"
            visible: !screen.uninstaller.empty
            symbol: "magnifyingglass"
            placeholderText: "Search…"
            onTextChanged: screen.uninstaller.filter = text
            Keys.onDownPressed: table.focusRows()
        }
        AppButton {
            objectName: "scanApps"
            label: screen.uninstaller.scanLabel
            symbol: "arrow.clockwise"
            busy: screen.uninstaller.loading
            onClicked: screen.uninstaller.scan()
        }
    }
    EmptyState {
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: screen.uninstaller.empty
        symbol: "trash.circle"
        title: "No apps scanned yet"
        message: "Scan to see all installed apps and find leftover files from previously uninstalled apps."
        AppButton {
            objectName: "scanInstalledApps"
            label: "Scan Installed Apps"
            kind: AppButton.Kind.Prominent
            onClicked: {
                screen.uninstaller.scan();
                search.forceActiveFocus(Qt.OtherFocusReason); // the button has gone
            }
        }
    }
    Hairline {
        id: divider
        anchors.top: header.bottom
        anchors.topMargin: 18
        width: parent.width
        visible: table.visible
    }
    AppTable {
        id: table
        anchors.top: divider.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        room: screen.height - divider.y
        visible: !screen.uninstaller.empty
        uninstaller: screen.uninstaller
        pathActions: screen.ui.pathActions

        EmptyState {
            anchors.fill: parent
            anchors.topMargin: 32
            visible: !screen.uninstaller.loading && table.rows.rowCount === 0
            title: "No app with this name"
        }
    }
    ConfirmationDialogs {
        confirmation: screen.uninstaller.confirmation
    }
}
