import QtQuick
import Kestavon.Ui

/// The items of one category: which of them go, and how.
Sheet {
    id: sheet

    property PreviewState preview: null
    required property PathActions pathActions

    title: preview === null ? "" : preview.title
    width: 660
    height: 600
    initialFocus: all
    visible: preview !== null && preview.isPresented
    onAboutToHide: preview.close()

    contentItem: Item {
        SymbolTile {
            x: 20
            y: 18
            symbol: sheet.preview === null ? "" : sheet.preview.symbol
            colorName: sheet.preview === null ? "secondary" : sheet.preview.color
            size: 44
            symbolSize: 24
        }
        AppText {
            x: 78
            y: 19
            text: sheet.title
            role: AppText.Role.EmptyTitle
            Accessible.role: Accessible.Heading
        }
        AppText {
            x: 78
            y: 44
            text: sheet.preview === null ? "" : sheet.preview.subtitle
            role: AppText.Role.Caption
            color: Theme.text2
        }
        AppButton {
            objectName: "closePreview"
            anchors.right: parent.right
            anchors.rightMargin: 12
            y: 24
            symbol: "xmark.circle.fill"
            symbolSize: 18
            kind: AppButton.Kind.Plain
            leftPadding: 7
            rightPadding: 7
            Accessible.name: "Close"
            onClicked: sheet.preview.close()
        }
        Hairline {
            y: 78
            width: parent.width
        }

        AppCheckBox {
            id: all
            objectName: "allItems"
            x: 20
            y: 90
            label: sheet.preview === null ? "" : sheet.preview.selectionText
            checked: sheet.preview !== null && sheet.preview.allSelected
            mixed: sheet.preview !== null && sheet.preview.someSelected
            // The state has the tick; the box only shows it.
            nextCheckState: () => checkState
            onClicked: sheet.preview.toggleAll()
        }
        AppButton {
            objectName: "selectAllItems"
            anchors.left: all.right
            anchors.leftMargin: 12
            y: 90
            label: sheet.preview === null ? "" : sheet.preview.allLabel
            small: true
            onClicked: sheet.preview.toggleAll()
        }
        AppText {
            anchors.right: sort.left
            anchors.rightMargin: 12
            anchors.verticalCenter: sort.verticalCenter
            text: sort.label
            color: Theme.text2
            Accessible.ignored: true
        }
        AppPicker {
            id: sort
            objectName: "sortPicker"
            anchors.right: parent.right
            anchors.rightMargin: 20
            y: 89
            label: "Sort"
            model: sheet.preview === null ? [] : sheet.preview.sortLabels
            currentIndex: sheet.preview === null ? -1 : sheet.preview.sortOrder
            onActivated: index => sheet.preview.sortBy(index)
        }
        Hairline {
            y: 127
            width: parent.width
        }

        VirtualList {
            id: rows
            objectName: "previewItems"
            y: 128
            width: parent.width
            height: parent.height - y - 65
            rowHeight: 40
            name: "Items"
            pathActions: sheet.pathActions
            count: sheet.preview === null ? 0 : sheet.preview.rowCount
            onToggled: row => sheet.preview.toggle(row)
            onAllRequested: sheet.preview.selectEverything()
            onRemovalRequested: (row, forGood) => sheet.preview.askRemoval(forGood)
            delegate: PreviewRow {
                list: rows
                preview: sheet.preview
            }
        }

        // Another order, another category: the rows are shown from the top.
        Connections {
            target: sheet.preview
            function onSortOrderChanged() {
                rows.scrollTo(0);
                rows.currentRow = rows.count > 0 ? 0 : -1;
            }
        }
        Rectangle {
            y: parent.height - 65
            width: parent.width
            height: 1
            color: Theme.border
        }
        AppText {
            id: selected
            objectName: "selectedCount"
            x: 20
            y: parent.height - 49
            text: sheet.preview === null ? "" : sheet.preview.selectedText
            weight: 600
        }
        AppText {
            objectName: "selectedSize"
            x: 20
            y: parent.height - 31
            text: sheet.preview === null ? "" : sheet.preview.selectedSizeText
            role: AppText.Role.Caption
            color: Theme.text2
        }
        Row {
            anchors.right: parent.right
            anchors.rightMargin: 20
            y: parent.height - 48
            spacing: 8
            Spinner {
                anchors.verticalCenter: parent.verticalCenter
                visible: sheet.preview !== null && sheet.preview.isBusy
            }
            AppButton {
                objectName: "previewDelete"
                label: "Delete Forever"
                kind: AppButton.Kind.RedBordered
                enabled: sheet.preview !== null && sheet.preview.canRemove
                onClicked: sheet.preview.deleteForever()
            }
            AppButton {
                objectName: "previewTrash"
                label: "Move to Trash"
                enabled: sheet.preview !== null && sheet.preview.canRemove
                onClicked: sheet.preview.moveToTrash()
            }
            AppButton {
                objectName: "previewSafeArea"
                label: "Move to Safe Area"
                symbol: "archivebox"
                kind: AppButton.Kind.Prominent
                enabled: sheet.preview !== null && sheet.preview.canRemove
                onClicked: sheet.preview.moveToSafeArea()
            }
        }
    }
}
