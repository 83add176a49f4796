import QtQuick
import Kestavon.Ui

/// What was found, category by category: a bar of their shares, and its legend.
Card {
    id: card

    required property SmartCleanState smartClean

    implicitHeight: 102
    Accessible.role: Accessible.Grouping
    Accessible.name: "Breakdown by category"

    AppText {
        x: 19
        y: 16
        text: "Breakdown by category"
        role: AppText.Role.SectionTitle
        Accessible.role: Accessible.Heading
    }
    Rectangle {
        id: track
        objectName: "breakdownBar"
        readonly property var shares: {
            card.smartClean.revision;
            return card.smartClean.segmentShares(4 / Math.max(1, width));
        }
        // All segments grow together, so that they fill the bar at every moment.
        property var before: []
        property var after: []
        property real grown: 1
        readonly property var drawn: after.map((share, index) => before[index] + (share - before[index]) * grown)
        readonly property int shown: drawn.filter(share => share > 0).length
        onSharesChanged: {
            const full = shares.some(share => share > 0);
            const wasFull = shown > 0;
            before = full && wasFull ? drawn : shares;
            grown = 0;
            after = shares;
            growth.restart();
        }
        NumberAnimation {
            id: growth
            target: track
            property: "grown"
            from: 0
            to: 1
            duration: Theme.growTime
            easing.type: Easing.InOutQuad
        }
        x: 19
        y: 45
        width: parent.width - 38
        height: 12
        radius: 4
        color: shown > 0 ? "transparent" : Theme.track
        clip: true
        Row {
            spacing: 2
            Repeater {
                model: card.smartClean.cardCount
                Rectangle {
                    required property int index
                    readonly property real share: track.drawn[index] ?? 0
                    visible: share > 0
                    width: share * (track.width - 2 * (track.shown - 1))
                    height: 12
                    radius: 4
                    color: Theme.graphic(card.smartClean.card(index).color)
                }
            }
        }
    }
    Flickable {
        id: legend
        objectName: "legend"
        readonly property bool fits: contentWidth <= width
        x: 19
        y: 69
        width: parent.width - 38
        height: 16
        contentWidth: entries.width
        contentHeight: height
        flickableDirection: Flickable.HorizontalFlick
        boundsBehavior: Flickable.StopAtBounds
        clip: true
        activeFocusOnTab: !fits
        Accessible.role: Accessible.List
        Accessible.name: "Legend"
        Accessible.focusable: !fits
        Keys.onPressed: event => {
            const distance = {
                [Qt.Key_Right]: 60,
                [Qt.Key_Left]: -60,
                [Qt.Key_End]: contentWidth,
                [Qt.Key_Home]: -contentWidth
            }[event.key];
            if (distance === undefined)
                return;
            contentX = Math.max(0, Math.min(contentWidth - width, contentX + distance));
            event.accepted = true;
        }
        onWidthChanged: contentX = Math.max(0, Math.min(contentWidth - width, contentX))

        Row {
            id: entries
            spacing: 16
            Repeater {
                model: card.smartClean.cardCount
                LegendDot {
                    required property int index
                    readonly property var shown: {
                        card.smartClean.revision;
                        return card.smartClean.card(index);
                    }
                    colorName: shown.color
                    label: shown.title
                    value: shown.total
                }
            }
        }
    }
    Rectangle { // what is beyond fades out
        anchors.right: legend.right
        y: legend.y
        width: 44
        height: legend.height
        visible: legend.contentX < legend.contentWidth - legend.width - 1
        gradient: Gradient {
            orientation: Gradient.Horizontal
            GradientStop { position: 0; color: Theme.tint(Theme.surface, 0) }
            GradientStop { position: 1; color: Theme.surface }
        }
    }
    Rectangle {
        anchors.left: legend.left
        y: legend.y
        width: 44
        height: legend.height
        visible: legend.contentX > 1
        gradient: Gradient {
            orientation: Gradient.Horizontal
            GradientStop { position: 0; color: Theme.surface }
            GradientStop { position: 1; color: Theme.tint(Theme.surface, 0) }
        }
    }
    Item {
        anchors.fill: legend
        FocusRing {
            visible: legend.activeFocus
            controlRadius: 6
        }
    }
}
