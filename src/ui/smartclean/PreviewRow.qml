import QtQuick
import Kestavon.Ui

/// One item of a category. A button in the row tells what removing it means.
TickRow {
    id: line

    required property PreviewState preview

    /// Asks the state again whenever what it lists has changed.
    readonly property var shown: {
        preview.contentRevision;
        return {
            name: preview.nameText(row),
            pathText: preview.pathText(row),
            path: preview.filePath(row),
            date: preview.dateText(row),
            size: preview.sizeText(row)
        };
    }

    /// Shown where only the folder tells items apart.
    readonly property string folder: {
        preview.contentRevision;
        return preview.folderText(row);
    }

    /// Shown while the application that the item belongs to is running.
    readonly property string running: {
        preview.contentRevision;
        return preview.runningText(row);
    }
    readonly property string reason: {
        preview.contentRevision;
        return preview.reasonText(row);
    }
    readonly property string advice: {
        preview.contentRevision;
        return preview.adviceText(row);
    }
    readonly property bool hasSecondLine: folder !== "" || running !== ""

    path: shown.path
    label: [shown.name, running, folder, shown.date, shown.size].filter(text => text !== "").join(", ")
    tickName: shown.name
    tickDescription: shown.pathText
    tipParent: popover.isOpen ? null : name // else the tip would lie over the popover
    ticked: {
        preview.selectionRevision;
        return preview.isSelected(row);
    }
    boxX: 20
    inset: 0
    divided: false
    onTick: preview.toggle(row)
    onRowChanged: about.close()

    ElidedText {
        id: name
        x: 48
        y: line.hasSecondLine ? 3 : 10
        width: Math.min(implicitWidth, date.x - x - 40)
        text: line.shown.name
        weight: 500
        Accessible.ignored: true
    }
    AppText {
        id: runningLine
        x: 48
        y: 21
        visible: line.running !== ""
        text: line.running
        role: AppText.Role.Caption
        color: Theme.ink("orange")
        Accessible.ignored: true
    }
    ElidedText {
        x: line.running === "" ? 48 : runningLine.x + runningLine.implicitWidth + 8
        y: 21
        width: Math.min(implicitWidth, date.x - x - 40)
        visible: line.folder !== ""
        text: line.folder
        role: AppText.Role.Caption
        color: Theme.text2
        Accessible.ignored: true
    }
    AppButton {
        id: about
        objectName: "about " + line.row

        function close() {
            if (popover.item)
                (popover.item as Popover).close();
        }
        x: date.x - width - 6
        anchors.verticalCenter: parent.verticalCenter
        visible: line.hovered || hovered || line.current || popover.isOpen
        symbol: "info.circle"
        small: true
        leftPadding: 6
        rightPadding: 6
        kind: AppButton.Kind.Plain
        focusPolicy: line.current || activeFocus ? Qt.StrongFocus : Qt.NoFocus
        Accessible.name: "About " + line.shown.name
        Accessible.description: line.advice
        onClicked: {
            popover.active = true;
            (popover.item as Popover).open();
        }
    }
    Loader {
        id: popover
        readonly property bool isOpen: item !== null && (item as Popover).visible
        active: false
        sourceComponent: Popover {
            parent: about
            title: line.reason
            message: line.advice
            detail: line.shown.pathText
        }
    }
    AppText {
        id: date
        x: parent.width - 258
        anchors.verticalCenter: parent.verticalCenter
        text: line.shown.date
        role: AppText.Role.Caption
        color: Theme.text2
        Accessible.ignored: true
    }
    AppText {
        anchors.right: parent.right
        anchors.rightMargin: 20
        anchors.verticalCenter: parent.verticalCenter
        text: line.shown.size
        Accessible.ignored: true
    }
    Hairline {
        anchors.bottom: parent.bottom
        width: parent.width
    }
}
