import QtQuick
import Kestavon.Ui

/// One finding of the security review.
VirtualListRow {
    id: line

    required property SecurityState security
    /// The button counts.
    required property bool settled

    /// Asks the state again whenever what it lists has changed.
    readonly property var shown: {
        security.revision;
        return {
            reason: security.reasonText(row),
            pathText: security.pathText(row),
            path: security.filePath(row),
            id: security.idText(row),
            level: security.levelText(row),
            symbol: security.levelSymbol(row),
            color: security.levelColor(row),
            removable: security.mayRemove(row),
            busy: security.isBusy(row)
        };
    }
    readonly property string protectedHelp: "System-level file — requires elevated privileges to remove"

    path: shown.path
    label: [shown.level, shown.reason, shown.pathText].concat(shown.removable ? [] : ["Protected"]).join(", ")
    Accessible.description: shown.removable ? "" : protectedHelp

    SymbolIcon {
        x: 18
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -0.5
        visible: !line.shown.busy
        name: line.shown.symbol
        size: 24
        color: Theme.graphic(line.shown.color)
    }
    Loader {
        x: 20
        anchors.verticalCenter: parent.verticalCenter
        active: line.shown.busy
        sourceComponent: Spinner {
            size: 20
        }
    }
    AppText {
        id: reason
        x: 54
        y: 12
        text: line.shown.reason
        Accessible.ignored: true
    }
    ThreatBadge {
        anchors.left: reason.right
        anchors.leftMargin: 8
        anchors.verticalCenter: reason.verticalCenter
        label: line.shown.level
        symbol: line.shown.symbol
        colorName: line.shown.color
        Accessible.ignored: true
    }
    ElidedText {
        x: 54
        y: 32
        width: Math.min(implicitWidth, end.x - x - 16)
        text: line.shown.pathText
        role: AppText.Role.Caption
        color: Theme.text2
        Accessible.ignored: true
    }
    Item {
        id: end
        anchors.right: parent.right
        anchors.rightMargin: 18
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -0.5
        width: line.shown.removable ? removal.implicitWidth : protection.implicitWidth
        height: removal.height
        AppText {
            id: protection
            anchors.verticalCenter: parent.verticalCenter
            visible: !line.shown.removable
            text: "Protected"
            role: AppText.Role.Caption
            color: Theme.text2
            Accessible.ignored: true
            HoverHandler {
                id: hover
            }
            Loader {
                active: hover.hovered && protection.visible
                sourceComponent: AppToolTip {
                    parent: protection
                    text: line.protectedHelp
                    visible: true
                }
            }
        }
        AppButton {
            id: removal
            objectName: "remove " + line.row
            visible: line.shown.removable
            label: "Remove"
            kind: AppButton.Kind.RedBordered
            small: true
            subject: line.shown.id
            enabled: !line.shown.busy
            focusPolicy: line.current || activeFocus ? Qt.StrongFocus : Qt.NoFocus
            Accessible.description: line.shown.pathText
            onClicked: {
                if (line.settled && !outdated)
                    line.security.askRemove(line.row);
            }
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
