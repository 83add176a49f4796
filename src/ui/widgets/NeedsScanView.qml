import QtQuick
import Kestavon.Ui

/// Fills a screen that has nothing to show before a storage scan: offers the scan, and shows how
/// far it is while it runs.
EmptyState {
    id: view

    required property ScanPanelState scan

    symbol: "magnifyingglass.circle"

    AppButton {
        objectName: "startScan"
        visible: !view.scan.scanning
        label: "Start Scan"
        symbol: "magnifyingglass"
        kind: AppButton.Kind.Prominent
        onClicked: view.scan.startScan()
    }
    Item {
        visible: view.scan.scanning
        implicitWidth: 48 + Math.max(busyTitle.implicitWidth, busyCount.implicitWidth)
        implicitHeight: 36
        Rectangle {
            width: 36
            height: 36
            radius: 18
            color: Theme.surface
            border.width: 1
            border.color: Theme.hairline
            Spinner {
                anchors.centerIn: parent
                size: 20
            }
        }
        AppText {
            id: busyTitle
            x: 48
            text: "Scanning…"
            weight: 600
        }
        AppText {
            id: busyCount
            x: 48
            y: 18
            text: view.scan.foundSoFar
            color: Theme.text2
            Accessible.name: spokenCount.text
            SpokenText {
                id: spokenCount
                source: busyCount.text
            }
        }
    }
}
