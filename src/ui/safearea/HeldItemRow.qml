import QtQuick
import Kestavon.Ui

/// One item of the Safe Area.
VirtualListRow {
    id: line

    required property HeldItems items
    /// The buttons may be pressed.
    property bool available: true

    signal restore
    signal deleteForever

    /// Asks the list again whenever it has changed.
    readonly property var shown: {
        items.revision;
        return {
            name: items.nameText(row),
            reason: items.reasonText(row),
            path: items.pathText(row),
            originalPath: items.originalPath(row),
            heldPath: items.heldPath(row),
            moved: items.movedText(row),
            busy: items.isBusy(row)
        };
    }

    path: shown.originalPath.empty ? shown.heldPath : shown.originalPath
    itemPath: shown.heldPath // a look at it before it goes
    label: [shown.name, shown.reason, shown.path, shown.moved].join(", ")

    SymbolIcon {
        x: 18
        anchors.verticalCenter: parent.verticalCenter
        visible: !line.shown.busy
        name: "archivebox.fill"
        size: 24
        color: Theme.graphic("orange")
    }
    Loader {
        x: 20
        anchors.verticalCenter: parent.verticalCenter
        active: line.shown.busy
        sourceComponent: Spinner {
            size: 20
        }
    }
    ElidedText {
        id: name
        x: 54
        y: 12
        width: Math.min(implicitWidth, buttons.x - x - reason.implicitWidth - 24)
        text: line.shown.name
        weight: 700
        Accessible.ignored: true
    }
    AppText {
        id: reason
        anchors.left: name.right
        anchors.leftMargin: 8
        y: 13
        text: line.shown.reason
        role: AppText.Role.Caption
        color: Theme.ink("orange")
        Accessible.ignored: true
    }
    ElidedText {
        x: 54
        y: 32
        width: Math.min(implicitWidth, buttons.x - x - 16)
        text: line.shown.path
        role: AppText.Role.Caption
        color: Theme.text2
        Accessible.ignored: true
    }
    AppText {
        x: 54
        y: 49
        text: line.shown.moved
        role: AppText.Role.Caption
        color: Theme.text3
        Accessible.ignored: true
    }
    Row {
        id: buttons
        anchors.right: parent.right
        anchors.rightMargin: 18
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8
        AppButton {
            objectName: line.list.name + " restore " + line.row
            label: "Restore"
            small: true
            enabled: line.available && !line.shown.busy
            focusPolicy: line.current || activeFocus ? Qt.StrongFocus : Qt.NoFocus
            Accessible.description: line.shown.path
            onClicked: line.restore()
        }
        AppButton {
            objectName: line.list.name + " delete " + line.row
            label: "Delete Forever"
            kind: AppButton.Kind.RedBordered
            small: true
            enabled: line.available && !line.shown.busy
            focusPolicy: line.current || activeFocus ? Qt.StrongFocus : Qt.NoFocus
            Accessible.description: line.shown.path
            onClicked: line.deleteForever()
        }
    }
    FocusRing {
        anchors.margins: 0
        anchors.fill: parent
        anchors.leftMargin: 6
        anchors.rightMargin: 6
        anchors.topMargin: 4
        anchors.bottomMargin: 5
        visible: line.ringShown
        radius: 8
    }
    TapHandler {
        onTapped: line.list.choose(line.row)
    }
}
