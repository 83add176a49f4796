import QtQuick
import Kestavon.Ui

/// The categories of junk, to be scanned and cleaned one by one or all at once.
SectionScreen {
    id: screen

    readonly property SmartCleanState smartClean: ui.smartClean

    /// Gives the keyboard to the next thing to do, when the button that had it is gone: a category
    /// to review, for scanning anew would throw away what was found.
    function passFocus(reason: int) {
        for (let i = 0; i < cards.count; ++i) {
            const found = cards.itemAt(i) as JunkCategoryCard;
            if (found.shown.isFound)
                return found.takeFocus(reason);
        }
        scanButton.forceActiveFocus(reason);
    }

    PageFlickable {
        id: flick
        anchors.fill: parent
        contentHeight: content.height + 50

        Column {
            id: content
            x: 28
            y: 22
            width: flick.width - 56
            spacing: 14

            Item { // banner and header stand a little further from what follows
                width: parent.width
                implicitHeight: banner.height + 4
                visible: !screen.ui.shell.hasFullDiskAccess
                FullDiskAccessBanner {
                    id: banner
                    objectName: "accessBanner"
                    width: parent.width
                    shell: screen.ui.shell
                    onRecheck: screen.ui.shell.refreshFullDiskAccess()
                }
            }
            Item {
                width: parent.width
                implicitHeight: header.height + 4
                PageHeader {
                    id: header
                    width: parent.width
                    title: "Smart Clean"
                    subtitle: screen.smartClean.statusText
                    subtitleIsStatus: true
                    subtitleColor: Theme.ink(screen.smartClean.statusColor)
                    subtitleWeight: screen.smartClean.statusColor === "secondary" ? 400 : 500
                    Spinner {
                        anchors.verticalCenter: parent.verticalCenter
                        visible: screen.smartClean.cleaning
                    }
                    AppButton {
                        id: scanButton
                        objectName: "scanAll"
                        label: screen.smartClean.scanning ? "Stop Scan" : "Scan All"
                        symbol: screen.smartClean.scanning ? "stop.fill" : "arrow.clockwise"
                        kind: screen.smartClean.scanning ? AppButton.Kind.RedBordered : AppButton.Kind.Bordered
                        onClicked: screen.smartClean.scanning ? screen.smartClean.stopScan() : screen.smartClean.scanAll()
                    }
                    AppButton {
                        objectName: "cleanAll"
                        shy: true
                        visible: label !== ""
                        enabled: !screen.smartClean.cleaning
                        onLabelChanged: {
                            if (label === "" && activeFocus)
                                screen.passFocus(focusReason);
                        }
                        label: screen.smartClean.cleanAllLabel
                        symbol: "sparkles"
                        kind: AppButton.Kind.PurpleProminent
                        onClicked: screen.smartClean.askCleanAll()
                    }
                }
            }
            SmartCleanSummaryBar {
                objectName: "summaryBar"
                width: parent.width
                visible: screen.smartClean.scanned
                smartClean: screen.smartClean
            }
            Item {
                id: grid
                readonly property real gap: 14
                readonly property int columns: screen.smartClean.cardColumns(width, gap)
                readonly property int rows: Math.ceil(screen.smartClean.cardCount / columns)
                readonly property real step: Math.min(270, (width + gap) / columns - gap) + gap
                width: parent.width
                implicitHeight: rows * (188 + gap) - gap
                Accessible.role: Accessible.Grouping
                Accessible.name: "Categories"
                Repeater {
                    id: cards
                    model: screen.smartClean.cardCount
                    JunkCategoryCard {
                        required property int index
                        readonly property int column: index % grid.columns
                        // On whole pixels, or the outlines would blur.
                        x: Math.round(column * grid.step)
                        y: Math.floor(index / grid.columns) * (height + grid.gap)
                        width: Math.round((column + 1) * grid.step - grid.gap) - x
                        shown: {
                            screen.smartClean.revision;
                            return screen.smartClean.card(index);
                        }
                        onScan: screen.smartClean.scanCategory(index)
                        onClean: screen.smartClean.review(index)
                        onButtonGone: reason => screen.passFocus(reason)
                    }
                }
            }
            SmartCleanDuplicatesCard {
                width: parent.width
                duplicates: screen.smartClean.duplicates
            }
        }
    }

    // The sheet is made when it is opened for the first time.
    Connections {
        target: screen.smartClean.preview
        function onOpened() {
            sheet.active = true;
        }
    }
    Loader {
        id: sheet
        active: false
        sourceComponent: CleanupPreviewSheet {
            pathActions: screen.ui.pathActions
            onClosed: {
                // The button that opened the sheet is gone when nothing is left in its category.
                const focused = screen.Window.activeFocusItem;
                if (!focused || !focused.visible)
                    screen.passFocus(Qt.TabFocusReason);
            }
        }
        onLoaded: (item as CleanupPreviewSheet).preview = screen.smartClean.preview
    }
    Component.onDestruction: smartClean.preview.close()

    ConfirmationDialogs {
        confirmation: screen.smartClean.confirmation
        errorTitle: "Clean Failed"
    }
    ConfirmationDialogs {
        confirmation: screen.smartClean.duplicates.confirmation
        errorTitle: "Error"
    }
    ConfirmationDialogs {
        confirmation: screen.smartClean.preview.notice
        errorTitle: "Notice"
    }
}
