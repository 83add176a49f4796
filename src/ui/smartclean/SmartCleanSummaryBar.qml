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
        readonly property var shares: {
            card.smartClean.revision;
            return card.smartClean.segmentShares(4 / Math.max(1, width));
        }
        readonly property int shown: shares.filter(share => share > 0).length
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
                    property real share: track.shares[index]
                    visible: track.shares[index] > 0
                    width: share * (track.width - 2 * (track.shown - 1))
                    height: 12
                    radius: 4
                    color: Theme.graphic(card.smartClean.card(index).color)
                    Behavior on share {
                        NumberAnimation { duration: Theme.growTime; easing.type: Easing.InOutQuad }
                    }
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
