import QtQuick
import Kestavon.Ui

/// One suggestion. A click anywhere in the row ticks it.
VirtualListRow {
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

    HoverFill {
        anchors.fill: parent
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        anchors.topMargin: 2
        anchors.bottomMargin: 3
        hovered: hover.hovered
        pressed: tap.pressed
    }
    AppCheckBox {
        id: box
        x: 18
        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: -0.5
        focusPolicy: Qt.NoFocus // the row has the keyboard
        Accessible.name: line.shown.name
        Accessible.description: line.shown.pathText
        checked: {
            line.cleaner.selectionRevision;
            line.cleaner.contentRevision;
            return line.cleaner.isSelected(line.row);
        }
        // The model has the tick; the box only shows it.
        nextCheckState: () => checkState
        onClicked: line.tick()
        Item {
            anchors.centerIn: parent
            width: 16
            height: 16
            FocusRing {
                visible: line.ringShown
                controlRadius: 4
            }
        }
    }
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

    function tick() {
        list.choose(row);
        cleaner.toggle(row);
    }

    HoverHandler {
        id: hover
    }
    Loader {
        active: hover.hovered && line.exists
        sourceComponent: AppToolTip {
            parent: name
            x: 0
            text: line.shown.pathText
            visible: true
        }
    }
    TapHandler {
        id: tap
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: line.tick()
    }
}
