import QtQuick
import Kestavon.Ui

/// The suggestions of the last scan: caches and old downloads, to be moved to the Safe Area.
SectionScreen {
    id: screen

    readonly property CleanerState cleaner: ui.cleaner

    PageHeader {
        id: header
        x: 28
        y: 22
        width: parent.width - 56
        title: "Quick Clean"
        subtitle: "Suggestions auto-detected from your last storage scan — caches and old downloads."
    }
    EmptyState {
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: screen.cleaner.rowCount === 0
        symbol: "sparkles"
        title: "No suggestions yet"
        message: "Run a storage scan from the Dashboard first. Caches and old downloads over 90 days will appear here."
        AppButton {
            objectName: "goToDashboard"
            label: "Go to Dashboard"
            onClicked: screen.cleaner.goToDashboard()
        }
    }
    Card {
        id: card
        x: 28
        anchors.top: header.bottom
        anchors.topMargin: 18
        width: parent.width - 56
        height: 49 + suggestions.height + 61
        visible: screen.cleaner.rowCount > 0

        AppText {
            id: selected
            objectName: "selectionText"
            x: 19
            y: 15
            text: screen.cleaner.selectionText
            weight: 600
        }
        AppText {
            objectName: "reclaimText"
            anchors.left: selected.right
            anchors.leftMargin: 12
            y: 15
            text: screen.cleaner.reclaimText
            weight: 600
            color: Theme.ink("orange")
        }
        AppButton {
            objectName: "selectAll"
            anchors.right: parent.right
            anchors.rightMargin: 15
            y: 8
            label: screen.cleaner.allLabel
            kind: AppButton.Kind.Plain
            onClicked: screen.cleaner.toggleAll()
        }
        Hairline {
            x: 1
            y: 48
            width: parent.width - 2
        }
        VirtualList {
            id: suggestions
            objectName: "suggestions"
            x: 1
            y: 49
            width: parent.width - 2
            room: screen.height - card.y - 28 - 49 - 61
            height: Math.max(rowHeight, Math.min(contentLength, room))
            name: "Suggestions"
            pathActions: screen.ui.pathActions
            count: screen.cleaner.rowCount
            onToggled: row => screen.cleaner.toggle(row)
            onAllRequested: screen.cleaner.selectAll()
            onRemovalRequested: screen.cleaner.askMove()
            delegate: CleanerRow {
                list: suggestions
                cleaner: screen.cleaner
            }
        }
        Hairline {
            x: 1
            anchors.top: suggestions.bottom
            width: parent.width - 2
        }
        Spinner {
            anchors.right: moveButton.left
            anchors.rightMargin: 12
            anchors.verticalCenter: moveButton.verticalCenter
            visible: screen.cleaner.moving
        }
        AppButton {
            id: moveButton
            objectName: "moveToSafeArea"
            anchors.right: parent.right
            anchors.rightMargin: 19
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 14
            label: "Move to Safe Area"
            kind: AppButton.Kind.Prominent
            enabled: screen.cleaner.canMove
            onClicked: screen.cleaner.askMove()
        }
    }
    ConfirmationDialogs {
        confirmation: screen.cleaner.confirmation
    }
}
