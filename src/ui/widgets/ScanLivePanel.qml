import QtQuick
import Kestavon.Ui

/// The storage scan's state, one layout for each phase.
Card {
    id: panel

    required property ScanPanelState scan

    implicitHeight: 34 + Math.max(28, lines.implicitHeight)
    Accessible.role: Accessible.StatusBar
    Accessible.name: scan.spokenText

    SymbolIcon {
        x: 19
        anchors.verticalCenter: parent.verticalCenter
        visible: !panel.scan.scanning
        name: panel.scan.symbol
        size: 28
        color: panel.scan.color === "secondary" ? Theme.text3 : Theme.graphic(panel.scan.color)
    }
    Loader {
        x: 19
        anchors.verticalCenter: parent.verticalCenter
        active: panel.scan.scanning
        sourceComponent: PulsingDot {}
    }
    Column {
        id: lines
        x: panel.scan.scanning ? 69 : 61
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - x - 19
        spacing: panel.scan.scanning ? 2 : 0

        AppText {
            width: parent.width
            text: panel.scan.title
            weight: 600
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
        Row {
            visible: panel.scan.scanning
            spacing: 5
            AppText {
                id: count
                text: panel.scan.count
                role: AppText.Role.EmptyTitle
                weight: 700
                lineHeight: 22
                Accessible.ignored: true
            }
            AppText {
                anchors.baseline: count.baseline
                text: "found so far"
                color: Theme.text2
                Accessible.ignored: true
            }
        }
        AppText {
            width: parent.width
            visible: text !== ""
            text: panel.scan.detail
            role: AppText.Role.Caption
            color: Theme.text2
            wrapMode: Text.Wrap
            Accessible.ignored: true
        }
    }
}
