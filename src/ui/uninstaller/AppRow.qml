import QtQuick
import Kestavon.Ui

/// An application of the table, or one thing that it has left.
VirtualListRow {
    id: line

    required property AppRows rows
    /// Left edge and width of each column.
    required property var cells
    /// The buttons count.
    required property bool settled

    /// Asks the rows again whenever they have changed.
    readonly property var shown: {
        rows.revision;
        return {
            isApp: rows.isApp(row),
            name: rows.nameText(row),
            icon: rows.iconText(row),
            detail: rows.detailText(row),
            size: rows.sizeText(row),
            color: rows.sizeColor(row),
            files: rows.filesText(row),
            path: rows.filePath(row),
            id: rows.idText(row),
            shared: rows.sharedText(row),
            canGo: rows.canUninstall(row),
            hasLeftovers: rows.hasLeftovers(row),
            open: rows.isOpen(row),
            busy: rows.isBusy(row)
        };
    }
    /// A control in a row that is not the current one is no stop of the Tab key.
    function policyOf(control: Item): int {
        return current || control.activeFocus ? Qt.StrongFocus : Qt.NoFocus;
    }

    signal opened
    signal removeLeftovers
    signal uninstall

    path: shown.path
    label: (shown.isApp ? [shown.name, shown.detail, shown.size, shown.files]
        : [shown.detail, shown.name, shown.shared, shown.size]).filter(text => text !== "").join(", ")
    divided: false
    height: shown.isApp ? rows.appHeight : rows.leftoverHeight

    Rectangle {
        anchors.fill: parent
        visible: !line.shown.isApp
        color: Theme.sunken
    }
    HoverFill {
        anchors.fill: parent
        radius: 0
        hovered: hover.hovered
    }
    Hairline {
        anchors.bottom: parent.bottom
        width: parent.width
    }
    // Applications and what they have left share their texts: a row is made in half the time.
    SymbolTile {
        x: line.cells[0].x
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -0.5
        visible: line.shown.isApp && line.shown.icon === ""
        symbol: "app.fill"
        tone: Theme.text3
        size: 28
        symbolSize: 16
        radius: 7
    }
    Loader {
        x: line.cells[0].x
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -0.5
        active: line.shown.isApp && line.shown.icon !== ""
        sourceComponent: AppIcon {
            icon: line.shown.icon
            size: 28
        }
    }
    ElidedText {
        id: name
        x: line.cells[0].x + (line.shown.isApp ? 40 : 140)
        y: line.shown.isApp ? 8 : Math.round((parent.height - height) / 2)
        width: Math.min(implicitWidth, line.shown.isApp ? line.cells[0].width - 40
            : size.x - x - 20 - (shared.active ? shared.width + 12 : 0))
        text: line.shown.name
        role: line.shown.isApp ? AppText.Role.Body : AppText.Role.Caption
        weight: line.shown.isApp ? 500 : 400
        Accessible.ignored: true
    }
    Loader {
        id: shared
        anchors.left: name.right
        anchors.leftMargin: 12
        anchors.verticalCenter: name.verticalCenter
        active: line.shown.shared !== ""
        sourceComponent: ElidedText {
            width: Math.min(implicitWidth, 220)
            text: line.shown.shared
            role: AppText.Role.Caption
            color: Theme.ink("orange")
            Accessible.ignored: true
        }
    }
    ElidedText {
        x: line.cells[0].x + 40
        y: line.shown.isApp ? 26 : Math.round((parent.height - height) / 2)
        width: Math.min(implicitWidth, line.shown.isApp ? line.cells[0].width - 40 : 92)
        text: line.shown.detail
        role: AppText.Role.Caption
        color: Theme.text2
        Accessible.ignored: true
    }
    AppText {
        id: size
        x: (line.shown.isApp ? line.cells[1].x + line.cells[1].width
            : line.cells[3].x + line.cells[3].width) - width
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -0.5
        text: line.shown.size
        role: line.shown.isApp ? AppText.Role.Body : AppText.Role.Caption
        weight: line.shown.isApp ? 500 : 400
        color: line.shown.isApp ? Theme.ink(line.shown.color) : Theme.text2
        Accessible.ignored: true
    }
    AppButton {
        id: files
        objectName: "files " + line.row
        x: line.cells[2].x + line.cells[2].width - width + rightPadding
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -0.5
        visible: line.shown.isApp && line.shown.hasLeftovers
        kind: AppButton.Kind.Plain
        small: true
        symbol: line.shown.open ? "chevron.down" : "chevron.right"
        symbolSize: 12
        label: line.shown.files
        inkColor: Theme.text2
        symbolColor: Theme.text3
        focusPolicy: line.policyOf(files)
        Accessible.description: line.shown.open ? "Hides what " + line.shown.name + " has left"
            : "Shows what " + line.shown.name + " has left"
        onClicked: {
            if (!activeFocus) // the pointer pressed it
                line.list.choose(line.row);
            line.opened();
        }
    }
    AppText {
        x: line.cells[2].x + line.cells[2].width - width
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -0.5
        visible: line.shown.isApp && !line.shown.hasLeftovers
        text: line.shown.files
        role: AppText.Role.Caption
        color: Theme.text2
        Accessible.ignored: true
    }
    Row {
        x: line.cells[3].x + line.cells[3].width - width
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -0.5
        visible: line.shown.isApp
        spacing: 8
        Loader {
            anchors.verticalCenter: parent.verticalCenter
            active: line.shown.busy
            visible: active
            sourceComponent: Spinner {}
        }
        AppButton {
            id: leftovers
            objectName: "leftovers " + line.row
            visible: line.shown.hasLeftovers
            label: "Remove Leftovers"
            small: true
            subject: line.shown.id
            enabled: !line.shown.busy
            focusPolicy: line.policyOf(leftovers)
            Accessible.description: line.shown.name
            onClicked: {
                if (line.settled && !outdated)
                    line.removeLeftovers();
            }
        }
        AppButton {
            id: all
            objectName: "uninstall " + line.row
            label: "Uninstall All"
            kind: AppButton.Kind.RedBordered
            small: true
            subject: line.shown.id
            hint: line.shown.canGo ? "" : "Only its leftovers could be moved, and there are none"
            enabled: !line.shown.busy && line.shown.canGo
            focusPolicy: line.policyOf(all)
            Accessible.description: hint === "" ? line.shown.name : line.shown.name + ". " + hint
            onClicked: {
                if (line.settled && !outdated)
                    line.uninstall();
            }
        }
    }
    FocusRing {
        anchors.margins: 0
        anchors.fill: parent
        anchors.leftMargin: 4
        anchors.rightMargin: 4
        anchors.topMargin: 2
        anchors.bottomMargin: 3
        visible: line.ringShown
        radius: 6
    }
    HoverHandler {
        id: hover
    }
    TapHandler {
        onTapped: line.list.choose(line.row)
    }
}
