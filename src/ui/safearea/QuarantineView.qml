import QtQuick
import Kestavon.Ui

/// What is held in the Safe Area, to be restored or deleted for good.
SectionScreen {
    id: screen

    readonly property SafeAreaState safeArea: ui.safeArea
    readonly property bool filled: safeArea.items.rowCount > 0

    PageHeader {
        id: header
        x: 28
        y: 22
        width: parent.width - 56
        title: "Safe Area"
        subtitle: "Files here are held safely — restore them or permanently delete when you're sure."
        Spinner {
            anchors.verticalCenter: parent.verticalCenter
            visible: screen.safeArea.working
        }
        AppButton {
            objectName: "restoreAll"
            visible: screen.filled
            enabled: !screen.safeArea.working
            label: "Restore All"
            symbol: "arrow.uturn.backward"
            onClicked: screen.safeArea.askRestoreAll()
        }
        AppButton {
            objectName: "deleteAll"
            visible: screen.filled
            enabled: !screen.safeArea.working
            label: "Delete All Forever"
            symbol: "trash.fill"
            kind: AppButton.Kind.RedBordered
            onClicked: screen.safeArea.askDeleteAll()
        }
    }
    EmptyState {
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: !screen.filled
        symbol: "archivebox"
        title: "Safe Area is empty"
        message: "Files you clean with Smart Clean appear here.\nNothing has been permanently deleted."
    }
    HeldItemList {
        x: 28
        anchors.top: header.bottom
        anchors.topMargin: 18
        width: parent.width - 56
        room: screen.height - y - 28
        visible: screen.filled
        name: "Held items"
        pathActions: screen.ui.pathActions
        items: screen.safeArea.items
        available: !screen.safeArea.working
        onRestore: row => screen.safeArea.restore(row)
        onDeleteForever: row => screen.safeArea.deleteForever(row)
    }
    ConfirmationDialogs {
        confirmation: screen.safeArea.confirmation
    }
}
