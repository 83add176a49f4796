import QtQuick
import Kestavon.Ui

/// A quiet strip that tells what the last scan could not read; gone when there is nothing to tell.
Rectangle {
    id: strip
    objectName: "scanNotice"

    required property ScanPanelState scan

    visible: scan.notice !== ""
    implicitHeight: visible ? text.implicitHeight + 20 : 0
    radius: 8
    color: Theme.sunken
    border.width: 1
    border.color: Theme.hairline
    Accessible.role: Accessible.AlertMessage
    Accessible.name: scan.notice

    SymbolIcon {
        x: 13
        y: 11
        name: "info.circle"
        color: Theme.text2
    }
    AppText {
        id: text
        x: 38
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - x - 14
        text: strip.scan.notice
        role: AppText.Role.Caption
        color: Theme.text2
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
}
