import QtQuick
import Kestavon.Ui

/// The overview: how much there is, how full the disk is, what the scan is doing, what was done.
SectionScreen {
    id: screen

    readonly property DashboardState dashboard: ui.dashboard
    readonly property ScanPanelState scan: ui.scanPanel

    PageFlickable {
        id: flick
        anchors.fill: parent
        contentHeight: content.height + 56

        Column {
            id: content
            x: 28
            y: 28
            width: flick.width - 56
            spacing: 16

            PageHeader {
                width: parent.width
                title: "Your Mac, Understood."
                subtitle: screen.dashboard.folder
                subtitlePath: screen.dashboard.folderPath
                pathActions: screen.ui.pathActions
            }
            Item { // the cards stand a little further from the title
                width: parent.width
                implicitHeight: cards.height + 2
                Item {
                    id: cards
                    y: 2
                    width: parent.width
                    height: 131
                    readonly property real gap: 14
                    /// Left edge of the card at `index`, on a whole pixel.
                    function edge(index: int): real {
                        return Math.round(index * (width + gap) / 3);
                    }
                    MetricCard {
                        objectName: "itemsScanned"
                        width: cards.edge(1) - cards.gap
                        title: "Items Scanned"
                        value: screen.dashboard.itemsScanned
                        symbol: "doc.fill"
                        accent: "accent"
                    }
                    MetricCard {
                        objectName: "totalStorage"
                        x: cards.edge(1)
                        width: cards.edge(2) - x - cards.gap
                        title: "Total Storage"
                        value: screen.dashboard.totalStorage
                        symbol: "internaldrive.fill"
                        accent: "purple"
                    }
                    MetricCard {
                        objectName: "hiddenFiles"
                        x: cards.edge(2)
                        width: cards.width - x
                        title: "Hidden Files"
                        value: screen.dashboard.hiddenFiles
                        symbol: "eye.slash.fill"
                        accent: "gray"
                    }
                }
            }
            StorageBar {
                objectName: "diskBar"
                width: parent.width
                disk: screen.ui.diskBar
            }
            Row {
                spacing: 8
                AppButton {
                    objectName: "scanStorage"
                    label: screen.scan.scanning ? "Stop Scan" : "Scan Storage"
                    symbol: screen.scan.scanning ? "stop.fill" : "magnifyingglass"
                    kind: screen.scan.scanning ? AppButton.Kind.DestructiveProminent : AppButton.Kind.Prominent
                    onClicked: screen.scan.scanning ? screen.scan.stopScan() : screen.scan.startScan()
                }
                AppButton {
                    objectName: "findDuplicates"
                    label: "Find Duplicates"
                    enabled: screen.dashboard.canFindDuplicates
                    hint: screen.dashboard.duplicatesHint
                    onClicked: screen.dashboard.findDuplicates()
                }
                AppButton {
                    objectName: "securityScan"
                    label: "Security Scan"
                    enabled: screen.dashboard.canReviewSecurity
                    onClicked: screen.dashboard.reviewSecurity()
                }
            }
            ScanLivePanel {
                objectName: "scanPanel"
                width: parent.width
                scan: screen.scan
            }
            ScanNotice {
                width: parent.width
                scan: screen.scan
            }
            Card {
                objectName: "recentActivity"
                width: parent.width
                visible: !screen.dashboard.recentActivity.empty
                implicitHeight: 39 + events.height + 5
                Accessible.role: Accessible.List
                Accessible.name: "Recent Activity"
                AppText {
                    x: 19
                    y: 14
                    text: "Recent Activity"
                    role: AppText.Role.SectionTitle
                    Accessible.role: Accessible.Heading
                }
                Column {
                    id: events
                    x: 19
                    y: 39
                    width: parent.width - 38
                    Repeater {
                        model: screen.dashboard.recentActivity
                        ActivityRow {
                            required property int index
                            width: events.width
                            pathActions: screen.ui.pathActions
                            Hairline {
                                visible: parent.index > 0
                                width: parent.width
                            }
                        }
                    }
                }
            }
        }
    }
    // The ages are kept current only while somebody can read them.
    Binding {
        target: screen.dashboard.recentActivity
        property: "ticking"
        value: screen.visible
    }
    Component.onDestruction: dashboard.recentActivity.ticking = false
}
