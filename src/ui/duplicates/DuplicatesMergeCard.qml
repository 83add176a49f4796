import QtQuick
import Kestavon.Ui

/// What merging does, and its two ways.
Card {
    id: card

    required property DuplicatesState duplicates

    implicitHeight: 69

    AppText {
        x: 19
        y: 16
        text: "Merge duplicates"
        role: AppText.Role.SectionTitle
        Accessible.role: Accessible.Heading
    }
    AppText {
        x: 19
        y: 36
        text: "Keeps the newest copy in each group · deletes the rest"
        role: AppText.Role.Caption
        color: Theme.text2
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: 19
        anchors.verticalCenter: parent.verticalCenter
        spacing: 12
        Spinner {
            anchors.verticalCenter: parent.verticalCenter
            visible: card.duplicates.merging
        }
        AppButton {
            objectName: "mergeToTrash"
            label: "Merge & Trash"
            symbol: "trash"
            enabled: !card.duplicates.merging
            onClicked: card.duplicates.askMergeToTrash()
        }
        AppButton {
            objectName: "mergeForever"
            label: "Merge & Delete Forever"
            symbol: "trash.fill"
            kind: AppButton.Kind.RedBordered
            enabled: !card.duplicates.merging
            onClicked: card.duplicates.askMergeForever()
        }
    }
}
