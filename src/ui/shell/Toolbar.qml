import QtQuick
import Kestavon.Ui

/// The bar above every screen; the window draws the line below it.
Item {
    id: toolbar

    required property ShellState shell

    implicitHeight: Theme.toolbarHeight
    clip: true
    Accessible.role: Accessible.ToolBar
    Accessible.name: "Toolbar"

    Row {
        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -0.5
        spacing: 4
        AppButton {
            objectName: "chooseFolder"
            label: "Choose Folder"
            symbol: "folder.badge.plus"
            symbolSize: 18
            kind: AppButton.Kind.Plain
            onClicked: toolbar.shell.chooseFolder()
        }
        Item {
            width: 13
            height: 32
            Rectangle {
                x: 6
                y: 6
                width: 1
                height: 20
                color: Theme.border
            }
        }
        AppButton {
            objectName: "scan"
            label: toolbar.shell.isScanning ? "Stop" : "Scan"
            symbol: toolbar.shell.isScanning ? "stop.fill" : "magnifyingglass"
            symbolSize: toolbar.shell.isScanning ? 16 : 18
            kind: toolbar.shell.isScanning ? AppButton.Kind.RedPlain : AppButton.Kind.Plain
            onClicked: {
                if (toolbar.shell.isScanning)
                    toolbar.shell.stop();
                else
                    toolbar.shell.scan();
            }
        }
    }
    Rectangle {
        readonly property real travel: (1 - Math.cos(Math.PI * clock.phase)) / 2
        anchors.bottom: parent.bottom
        visible: toolbar.shell.isScanning
        width: Theme.reducedMotion ? parent.width : Math.round(parent.width * 0.22)
        height: 2
        x: Theme.reducedMotion ? 0 : Math.round((parent.width + width) * travel) - width
        color: Theme.accent
        opacity: Theme.reducedMotion ? 0.4 : 1
        SteppedClock {
            id: clock
            running: toolbar.shell.isScanning && !Theme.reducedMotion
            period: 1600
        }
    }
}
