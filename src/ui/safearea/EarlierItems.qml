import QtQuick
import Kestavon.Ui

/// What earlier runs of the program have left in the Safe Area.
Item {
    id: earlier

    required property SafeAreaState safeArea
    required property PathActions pathActions
    readonly property real wantedHeight: list.y + list.wantedHeight

    AppText {
        id: heading
        y: 4
        text: earlier.safeArea.earlierText
        role: AppText.Role.SectionTitle
        Accessible.role: Accessible.Heading
    }
    Row {
        anchors.right: parent.right
        spacing: 8
        AppButton {
            objectName: "hideEarlier"
            label: "Hide"
            small: true
            kind: AppButton.Kind.Plain
            onClicked: earlier.safeArea.hideEarlier()
        }
        AppButton {
            objectName: "restoreAllEarlier"
            label: "Restore All"
            small: true
            enabled: list.available && earlier.safeArea.canRestoreEarlier
            onClicked: earlier.safeArea.askRestoreAllEarlier()
        }
        AppButton {
            objectName: "deleteAllEarlier"
            label: "Delete All Forever"
            small: true
            kind: AppButton.Kind.RedBordered
            enabled: list.available
            onClicked: earlier.safeArea.askDeleteAllEarlier()
        }
    }
    HeldItemList {
        id: list
        y: 36
        width: parent.width
        room: parent.height - y
        name: "Earlier items"
        pathActions: earlier.pathActions
        items: earlier.safeArea.earlierItems
        available: !earlier.safeArea.working
        onRestore: row => earlier.safeArea.restoreEarlier(row)
        onDeleteForever: row => earlier.safeArea.askDeleteEarlier(row)
    }
}
