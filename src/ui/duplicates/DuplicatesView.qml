import QtQuick
import Kestavon.Ui

/// Files with the same content, found among those of the last scan, and their merge.
SectionScreen {
    id: screen

    readonly property DuplicatesState duplicates: ui.duplicates
    /// The search, or why it failed, stands in the place of the button that starts it.
    readonly property bool showsAnalysis: duplicates.analyzing || duplicates.failed

    // Buttons give way to others, and the keyboard goes with them.
    onShowsAnalysisChanged: {
        if (showsAnalysis && analyze.activeFocus)
            analysis.takeFocus();
        else if (!showsAnalysis && analysis.hasKeyboard)
            analyze.forceActiveFocus(Qt.OtherFocusReason);
    }

    PageHeader {
        id: header
        x: 28
        y: 22
        width: parent.width - 56
        title: "Duplicates"
        subtitle: "SHA-256 comparison prevents false matches"
    }
    EmptyState {
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: !screen.duplicates.hasRecords
        title: "Storage scan needed first"
        message: "Duplicate detection compares files from your storage scan. Run a scan, then tap Analyze Duplicates."
    }
    Item {
        id: results
        anchors.top: header.bottom
        anchors.topMargin: 18
        anchors.bottom: parent.bottom
        width: parent.width
        visible: screen.duplicates.hasRecords

        Item {
            x: 28
            width: parent.width - 56
            height: analyze.height
            Accessible.role: Accessible.StatusBar
            Accessible.name: screen.duplicates.spokenText
        }
        DuplicatesAnalysisCard {
            id: analysis
            x: 28
            width: parent.width - 56
            visible: screen.showsAnalysis
            duplicates: screen.duplicates
        }
        AppButton {
            id: analyze
            objectName: "analyze"
            x: 28
            visible: !screen.showsAnalysis
            label: "Analyze Duplicates"
            kind: AppButton.Kind.Prominent
            enabled: screen.duplicates.canAnalyze
            onClicked: screen.duplicates.analyze()
        }
        AppText {
            objectName: "summary"
            anchors.left: analyze.right
            anchors.leftMargin: 12
            anchors.verticalCenter: analyze.verticalCenter
            visible: screen.duplicates.foundSome
            text: screen.duplicates.summary
            Accessible.ignored: true
            weight: 600
            color: Theme.ink("orange")
        }
        DuplicatesMergeCard {
            id: mergeCard
            x: 28
            y: 46
            width: parent.width - 56
            visible: screen.duplicates.foundSome
            duplicates: screen.duplicates
            // With what was merged go its buttons; whoever pressed one by key goes on from here.
            onVisibleChanged: {
                const focused = screen.Window.activeFocusItem;
                if (!visible && screen.visible && !focused?.activeFocusOnTab)
                    analyze.forceActiveFocus(Qt.OtherFocusReason);
            }
        }
        Hairline {
            anchors.top: groups.top
            width: parent.width
            visible: groups.visible && groups.offset > 0
        }
        DuplicateGroupList {
            id: groups
            objectName: "groups"
            x: 28
            anchors.top: mergeCard.bottom
            anchors.topMargin: 14 - rows.cardGap
            width: parent.width - x
            height: parent.height - y
            room: screen.height - results.y - y
            rightMargin: 28
            visible: screen.duplicates.foundSome
            rows: screen.duplicates.rows
            pathActions: screen.ui.pathActions
        }
        EmptyState {
            anchors.fill: parent
            anchors.topMargin: 32
            visible: screen.duplicates.foundNone
            symbol: "checkmark.circle"
            symbolColor: Theme.graphic("green")
            title: "No duplicates found"
        }
    }
    ConfirmationDialogs {
        confirmation: screen.duplicates.confirmation
        errorTitle: "Error"
    }
}
