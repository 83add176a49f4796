import QtQuick
import Kestavon.Ui

/// Duplicates among the scanned files: the search for them, and their merge.
Card {
    id: card

    required property DuplicatesCardState duplicates

    implicitHeight: 70
    Accessible.role: Accessible.Grouping
    Accessible.name: "Duplicate Files"

    SymbolTile {
        x: 19
        y: 17
        symbol: "doc.on.doc.fill"
        colorName: "purple"
    }
    AppText {
        x: 69
        y: 16
        text: "Duplicate Files"
        role: AppText.Role.CardTitle
        Accessible.role: Accessible.Heading
    }
    ElidedText {
        objectName: "duplicatesStatus"
        x: 69
        y: 37
        width: Math.min(implicitWidth, buttons.x - x - 16)
        text: card.duplicates.statusText
        role: AppText.Role.Caption
        elide: Text.ElideRight
        color: Theme.ink(card.duplicates.statusColor)
        Accessible.role: Accessible.StatusBar
    }
    Row {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: 19
        anchors.verticalCenter: parent.verticalCenter
        spacing: 12
        Spinner {
            anchors.verticalCenter: parent.verticalCenter
            visible: card.duplicates.analyzing || card.duplicates.merging
        }
        AppButton {
            id: analyze
            objectName: "analyzeNow"
            label: card.duplicates.buttonLabel
            symbol: card.duplicates.buttonSymbol
            kind: card.duplicates.analyzing ? AppButton.Kind.RedBordered : AppButton.Kind.Bordered
            enabled: card.duplicates.buttonEnabled
            onClicked: card.duplicates.pressButton()
        }
        AppButton {
            objectName: "cardMergeToTrash"
            shy: true
            visible: card.duplicates.canMerge
            onVisibleChanged: {
                if (!card.duplicates.canMerge && activeFocus)
                    analyze.forceActiveFocus(focusReason);
            }
            label: "Merge & Trash"
            symbol: "trash"
            enabled: !card.duplicates.merging
            onClicked: card.duplicates.askMergeToTrash()
        }
        AppButton {
            objectName: "cardMergeForever"
            shy: true
            visible: card.duplicates.canMerge
            onVisibleChanged: {
                if (!card.duplicates.canMerge && activeFocus)
                    analyze.forceActiveFocus(focusReason);
            }
            label: "Delete Forever"
            symbol: "trash.fill"
            kind: AppButton.Kind.RedBordered
            enabled: !card.duplicates.merging
            onClicked: card.duplicates.askMergeForever()
        }
    }
}
