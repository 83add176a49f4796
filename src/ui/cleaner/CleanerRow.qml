import QtQuick
import Kestavon.Ui

/// One suggestion. A click anywhere in the row ticks it.
TickRow {
    id: line

    required property CleanerState cleaner

    /// Asks the state again whenever what it lists has changed.
    readonly property var shown: {
        cleaner.contentRevision;
        return {
            name: cleaner.nameText(row),
            pathText: cleaner.pathText(row),
            path: cleaner.filePath(row),
            reason: cleaner.reasonText(row),
            modified: cleaner.modifiedText(row),
            size: cleaner.sizeText(row),
            symbol: cleaner.symbol(row),
            color: cleaner.symbolColor(row)
        };
    }

    path: shown.path
    label: [shown.name, shown.reason, shown.modified, shown.size].join(", ")
    tickName: shown.name
    tickDescription: shown.pathText
    tipParent: name
    ticked: {
        cleaner.selectionRevision;
        cleaner.contentRevision;
        return cleaner.isSelected(row);
    }
    onTick: cleaner.toggle(row)

    SymbolIcon {
        x: 48
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -0.5
        name: line.shown.symbol
        size: 18
        color: Theme.graphic(line.shown.color)
    }
    AppText {
        id: name
        x: 78
        y: 9
        width: Math.min(implicitWidth, modified.x - x - 20)
        text: line.shown.name
        weight: 500
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
    AppText {
        x: 78
        y: 28
        text: line.shown.reason
        role: AppText.Role.Caption
        color: Theme.text2
        Accessible.ignored: true
    }
    AppText {
        id: modified
        x: parent.width - 18 - 302
        anchors.verticalCenter: parent.verticalCenter
        text: line.shown.modified
        role: AppText.Role.Caption
        color: Theme.text2
        Accessible.ignored: true
    }
    AppText {
        anchors.right: parent.right
        anchors.rightMargin: 18
        anchors.verticalCenter: parent.verticalCenter
        text: line.shown.size
        weight: 500
        Accessible.ignored: true
    }
}
