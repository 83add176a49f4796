import QtQuick
import Kestavon.Ui

/// Tells that protected folders cannot be read, and leads to the switch. The screen decides what
/// "Re-check" does.
Rectangle {
    id: banner

    required property ShellState shell

    signal recheck

    implicitHeight: Math.max(62, texts.implicitHeight + 28)
    radius: 12
    color: Theme.over(Theme.bg, Theme.graphic("orange"), 0.10)
    border.width: 1
    border.color: Theme.tint(Theme.graphic("orange"), 0.55)
    Accessible.role: Accessible.AlertMessage
    Accessible.name: "Full Disk Access required"

    SymbolIcon {
        x: 17
        anchors.verticalCenter: parent.verticalCenter
        name: "lock.shield.fill"
        size: 26
        color: Theme.graphic("orange")
    }
    Column {
        id: texts
        x: 57
        anchors.verticalCenter: parent.verticalCenter
        width: buttons.x - x - 14
        AppText {
            width: parent.width
            text: "Full Disk Access required"
            weight: 600
        }
        AppText {
            width: parent.width
            text: "Without it, protected directories like ~/Library/Caches, Containers, and system logs are invisible to Kestavon."
            role: AppText.Role.Caption
            color: Theme.text2
            wrapMode: Text.Wrap
        }
    }
    Row {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: 17
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8
        AppButton {
            label: "Open System Settings"
            kind: AppButton.Kind.Prominent
            onClicked: banner.shell.openFullDiskAccessSettings()
        }
        AppButton {
            label: "Re-check"
            onClicked: banner.recheck()
        }
    }
}
