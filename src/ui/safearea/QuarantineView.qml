import QtQuick
import Kestavon.Ui

/// What is held in the Safe Area, to be restored or deleted for good; below it, when asked for, what
/// earlier runs of the program have left there.
SectionScreen {
    id: screen

    readonly property SafeAreaState safeArea: ui.safeArea
    readonly property bool filled: safeArea.items.rowCount > 0
    /// The height below the header, and how it is shared.
    readonly property real room: height - header.y - header.height - 18 - 28
    readonly property real listNeeds: filled ? list.wantedHeight : 240
    readonly property real earlierHeight: Math.round(Math.min(earlier.wantedHeight,
        Math.max(room / 2, room - listNeeds - 20)))
    readonly property real listRoom: safeArea.showsEarlier ? room - earlierHeight - 20
        : safeArea.offersEarlier ? room - 46 : room

    Component.onCompleted: safeArea.lookForEarlier()

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
        width: parent.width
        height: (screen.safeArea.showsEarlier ? screen.listRoom : screen.room) + 18
        visible: !screen.filled
        symbol: "archivebox"
        title: "Safe Area is empty"
        message: "Files you clean with Smart Clean appear here.\nNothing has been permanently deleted."
    }
    HeldItemList {
        id: list
        x: 28
        anchors.top: header.bottom
        anchors.topMargin: 18
        width: parent.width - 56
        room: screen.listRoom
        visible: screen.filled
        name: "Held items"
        pathActions: screen.ui.pathActions
        items: screen.safeArea.items
        available: !screen.safeArea.working
        onRestore: row => screen.safeArea.restore(row)
        onDeleteForever: row => screen.safeArea.deleteForever(row)
    }
    AppButton {
        objectName: "showEarlier"
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 28
        visible: screen.safeArea.offersEarlier
        label: "Show earlier items"
        symbol: "clock.arrow.circlepath"
        hint: screen.safeArea.earlierText
        onClicked: screen.safeArea.showEarlier()
    }
    EarlierItems {
        id: earlier
        x: 28
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 28
        width: parent.width - 56
        height: screen.earlierHeight
        visible: screen.safeArea.showsEarlier
        safeArea: screen.safeArea
        pathActions: screen.ui.pathActions
    }
    ConfirmationDialogs {
        confirmation: screen.safeArea.confirmation
    }
}
