import QtQuick
import Kestavon.Ui

/// What the rows of one visible group stand on. It is drawn little further than it can be seen:
/// the card of a hundred thousand files would be millions of pixels high.
Card {
    id: card

    required property DuplicateRows rows
    required property int group
    /// How far the list is scrolled, and how high it is.
    required property real offset
    required property real listHeight
    readonly property real beyond: 2 * radius
    readonly property real upperEdge: {
        rows.revision;
        return rows.groupTop(group) + rows.cardGap - offset;
    }
    readonly property real lowerEdge: {
        rows.revision;
        return rows.groupTop(group + 1) - offset;
    }

    z: -1
    y: Math.max(upperEdge, -beyond)
    height: Math.min(lowerEdge, listHeight + beyond) - y
    visible: group < rows.groupCount && height > 0

    Rectangle {
        x: card.rows.panelMargin
        y: Math.max(card.upperEdge + card.rows.headingHeight, -card.beyond) - card.y
        width: parent.width - 2 * x
        height: Math.min(card.lowerEdge - card.rows.panelMargin, card.listHeight + card.beyond) - y - card.y
        visible: height > 0
        radius: 8
        color: Theme.sunken
    }
}
