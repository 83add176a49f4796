import QtQuick
import Kestavon.Ui

/// One running application.
VirtualListRow {
    id: line

    required property ProcessesState processes
    required property real memoryEdge

    /// Asks the list again whenever it has changed.
    readonly property var shown: {
        processes.revision;
        return {
            name: processes.nameText(row),
            process: processes.processText(row),
            memory: processes.memoryText(row),
            icon: processes.icon(row),
            large: processes.isLarge(row),
            guarded: processes.isProtected(row)
        };
    }

    divided: false
    label: [shown.name, shown.process, shown.memory]
        .concat(shown.guarded ? ["System process — protected"] : []).join(", ")

    Rectangle {
        anchors.fill: parent
        visible: hover.hovered
        color: Theme.hover
    }
    HoverHandler {
        id: hover
    }
    TapHandler {
        onTapped: line.list.choose(line.row)
    }
    AppIcon {
        x: 28
        anchors.verticalCenter: parent.verticalCenter
        icon: line.shown.icon
        size: 28
    }
    ElidedText {
        x: 68
        y: 8
        width: Math.min(implicitWidth, line.memoryEdge - 120 - x)
        text: line.shown.name
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    AppText {
        x: 68
        y: 27
        text: line.shown.process
        role: AppText.Role.Caption
        color: Theme.text2
        Accessible.ignored: true
    }
    AppText {
        x: line.memoryEdge - width
        anchors.verticalCenter: parent.verticalCenter
        text: line.shown.memory
        weight: line.shown.large ? 600 : 400
        color: line.shown.large ? Theme.ink("orange") : Theme.text2
        Accessible.ignored: true
    }
    AppButton {
        objectName: "forceQuit " + line.row
        anchors.right: parent.right
        anchors.rightMargin: 28
        anchors.verticalCenter: parent.verticalCenter
        visible: !line.shown.guarded
        label: "Force Quit"
        kind: AppButton.Kind.RedBordered
        small: true
        focusPolicy: line.current || activeFocus ? Qt.StrongFocus : Qt.NoFocus
        Accessible.description: line.shown.name
        onPressedChanged: line.processes.held = pressed
        onClicked: line.processes.askForceQuit(line.row)
    }
    Row {
        anchors.right: parent.right
        anchors.rightMargin: 28
        anchors.verticalCenter: parent.verticalCenter
        visible: line.shown.guarded
        spacing: 6
        SymbolIcon {
            anchors.verticalCenter: parent.verticalCenter
            name: "lock.shield.fill"
            size: 14
            color: Theme.text2
        }
        AppText {
            anchors.verticalCenter: parent.verticalCenter
            text: "System process — protected"
            role: AppText.Role.Caption
            color: Theme.text2
            Accessible.ignored: true
        }
    }
    Hairline {
        anchors.bottom: parent.bottom
        width: parent.width
    }
    FocusRing {
        anchors.fill: parent
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        anchors.topMargin: 3
        anchors.bottomMargin: 4
        visible: line.ringShown
        radius: 8
    }
}
