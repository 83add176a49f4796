import QtQuick
import Kestavon.Ui

/// The offline review of the files of the last scan, and what it found.
SectionScreen {
    id: screen

    readonly property SecurityState security: ui.security

    PageHeader {
        id: header
        x: 28
        y: 22
        width: parent.width - 56
        title: "Offline Security"
        subtitle: "Local signatures + persistence path review"
    }
    NeedsScanView {
        anchors.top: header.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        visible: !screen.security.hasRecords
        scan: screen.ui.scanPanel
        title: "Storage scan needed first"
        message: "Security scan checks your files against local threat signatures and persistence paths. Run a storage scan first."
    }
    Item {
        id: results
        anchors.top: header.bottom
        anchors.topMargin: 18
        anchors.bottom: parent.bottom
        width: parent.width
        visible: screen.security.hasRecords

        AppButton {
            id: run
            objectName: "runSecurityScan"
            x: 28
            visible: !screen.security.scanning
            label: "Run Security Scan"
            kind: AppButton.Kind.Prominent
            onClicked: screen.security.scan()
        }
        Row {
            id: progress
            x: 28
            height: run.height
            visible: screen.security.scanning
            spacing: 8
            Spinner {
                anchors.verticalCenter: parent.verticalCenter
            }
            AppText {
                objectName: "securityPhase"
                anchors.verticalCenter: parent.verticalCenter
                text: screen.security.phaseText
                Accessible.role: Accessible.StatusBar
            }
        }
        // What the last review has found stands there while the next one runs, too.
        Row {
            anchors.left: screen.security.scanning ? progress.right : run.right
            anchors.leftMargin: 14
            height: run.height
            visible: words.text !== ""
            spacing: 7
            SymbolIcon {
                anchors.verticalCenter: parent.verticalCenter
                visible: screen.security.summary !== ""
                name: screen.security.summarySymbol
                size: 18
                color: Theme.graphic(screen.security.summarySymbolColor)
            }
            AppText {
                id: words
                objectName: "securitySummary"
                anchors.verticalCenter: parent.verticalCenter
                text: screen.security.summary !== "" ? screen.security.summary
                    : screen.security.scanning ? "" : screen.security.phaseText
                weight: 600
                color: screen.security.summaryTextColor === "" ? Theme.text
                    : Theme.ink(screen.security.summaryTextColor)
                Accessible.role: Accessible.StatusBar
            }
        }
        // When a finding goes, the next one comes under the pointer.
        Timer {
            id: settling
            objectName: "securitySettling"
            interval: 500
        }
        Connections {
            target: screen.security
            function onRowsChanged() {
                settling.restart();
            }
        }
        Card {
            x: 28
            anchors.top: run.bottom
            anchors.topMargin: 14
            width: parent.width - 56
            height: Math.min(findings.contentLength, findings.room) + 2
            visible: screen.security.rowCount > 0

            VirtualList {
                id: findings
                objectName: "findings"
                anchors.fill: parent
                anchors.margins: 1
                room: results.height - parent.y - 28 - 2
                rowHeight: 60
                name: "Findings"
                pathActions: screen.ui.pathActions
                count: screen.security.rowCount
                delegate: FindingRow {
                    list: findings
                    security: screen.security
                    settled: !settling.running
                }
            }
        }
    }
    ConfirmationDialogs {
        confirmation: screen.security.confirmation
        errorTitle: "Could Not Remove"
    }
}
