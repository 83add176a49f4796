import QtQuick
import Kestavon.Ui

/// The heading of a section of startup items, or one item.
VirtualListRow {
    id: line

    required property StartupRows rows
    /// The button counts.
    required property bool settled

    /// Asks the rows again whenever they have changed.
    readonly property var shown: {
        rows.revision;
        return {
            heading: rows.isHeading(row),
            title: rows.titleText(row),
            detail: rows.detailText(row),
            path: rows.filePath(row),
            id: rows.idText(row),
            pathText: rows.pathText(row),
            isProtected: rows.isProtected(row),
            busy: rows.isBusy(row),
            height: rows.rowTop(row + 1) - rows.rowTop(row),
            last: row + 1 === rows.rowCount || rows.isHeading(row + 1)
        };
    }

    signal remove

    path: shown.path
    label: [shown.title, shown.detail].concat(shown.isProtected ? ["Protected"] : [])
        .filter(text => text !== "").join(", ")
    Accessible.role: shown.heading ? Accessible.Heading : Accessible.ListItem
    divided: !shown.heading && !shown.last
    height: shown.heading ? shown.height : rows.itemHeight

    SymbolIcon {
        x: 22
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -0.5
        visible: !line.shown.heading && !line.shown.busy
        name: line.shown.isProtected ? "lock.shield.fill" : "gearshape"
        size: 22
        color: line.shown.isProtected ? Theme.text2 : Theme.graphic("orange")
    }
    Loader {
        x: 23
        anchors.verticalCenter: parent.verticalCenter
        active: line.shown.busy
        sourceComponent: Spinner {
            size: 20
        }
    }
    // Headings and items share their texts: a row is made in half the time.
    ElidedText {
        id: title
        x: line.shown.heading ? 0 : 58
        y: line.shown.heading ? line.shown.height - line.rows.headingHeight
            : line.shown.detail === "" ? 17 : 9
        width: Math.min(implicitWidth, line.shown.heading ? parent.width : end.x - x - 16)
        text: line.shown.title
        weight: line.shown.heading ? 600 : 500
        Accessible.ignored: true
    }
    ElidedText {
        x: title.x
        anchors.top: title.bottom
        width: Math.min(implicitWidth, line.shown.heading ? parent.width : end.x - x - 16)
        text: line.shown.detail
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
        width: line.shown.isProtected ? protection.implicitWidth : removal.implicitWidth
        height: removal.height
        visible: !line.shown.heading
        AppText {
            id: protection
            anchors.verticalCenter: parent.verticalCenter
            visible: line.shown.isProtected
            text: "Protected"
            role: AppText.Role.Caption
            color: Theme.text2
            Accessible.ignored: true
        }
        AppButton {
            id: removal
            objectName: "remove " + line.row
            visible: !line.shown.isProtected
            label: "Remove"
            kind: AppButton.Kind.RedBordered
            small: true
            subject: line.shown.id
            enabled: !line.shown.busy
            focusPolicy: line.current || activeFocus ? Qt.StrongFocus : Qt.NoFocus
            Accessible.description: line.shown.title
            onClicked: {
                if (line.settled && !outdated)
                    line.remove();
            }
        }
    }
    FocusRing {
        anchors.margins: 0
        anchors.fill: parent
        anchors.leftMargin: line.shown.heading ? 0 : 6
        anchors.rightMargin: anchors.leftMargin
        anchors.topMargin: line.shown.heading ? line.shown.height - line.rows.headingHeight : 4
        anchors.bottomMargin: line.shown.heading ? 6 : 5
        visible: line.ringShown
        radius: 8
    }
    // The file that defines the item, which its removal takes away.
    HoverHandler {
        id: hover
        enabled: !line.shown.heading
    }
    Loader {
        active: hover.hovered && line.exists && line.shown.pathText !== ""
        sourceComponent: AppToolTip {
            parent: title
            x: 0
            y: 36
            text: line.shown.pathText
            visible: true
        }
    }
    TapHandler {
        onTapped: line.list.choose(line.row)
    }
}
