import QtQuick
import Kestavon.Ui

/// One category of junk: what it is, and what was found in it.
Card {
    id: card

    required property var shown // a JunkCard
    readonly property color tone: Theme.graphic(shown.color)

    signal scan
    signal clean
    /// The card's button had the keyboard, for this reason, and is gone.
    signal buttonGone(int reason)

    function takeFocus(reason: int) {
        button.forceActiveFocus(reason);
    }

    onShownChanged: {
        if (shown.isClean && button.activeFocus)
            buttonGone(button.focusReason);
    }

    implicitHeight: 188
    border.color: shown.isFound ? Theme.over(Theme.surface, tone, 0.55) : Theme.hairline
    Accessible.role: Accessible.Grouping
    Accessible.name: shown.title
    Accessible.description: shown.spokenState

    SymbolTile {
        x: 15
        y: 15
        symbol: card.shown.symbol
        colorName: card.shown.color
    }
    Loader {
        anchors.right: parent.right
        anchors.rightMargin: 15
        y: 15
        active: card.shown.isScanning
        sourceComponent: Spinner {
            color: Theme.text2
            Accessible.ignored: true
        }
    }
    SymbolIcon {
        anchors.right: parent.right
        anchors.rightMargin: 15
        y: 15
        visible: !card.shown.isScanning && (card.shown.isClean || card.shown.isFound)
        name: card.shown.isFound ? "exclamationmark.circle.fill" : "checkmark.circle.fill"
        size: 18
        color: card.shown.isFound ? card.tone : Theme.graphic("green")
    }
    ElidedText {
        x: 15
        y: 60
        width: Math.min(implicitWidth, parent.width - 30)
        text: card.shown.title
        role: AppText.Role.CardTitle
        Accessible.role: Accessible.Heading
    }
    AppText {
        x: 15
        y: 81
        width: parent.width - 30
        text: card.shown.subtitle
        role: AppText.Role.Caption
        color: Theme.text2
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
    }
    AppText {
        id: total
        x: 15
        y: 116
        visible: card.shown.isFound
        text: card.shown.total
        role: AppText.Role.EmptyTitle
        display: true
        weight: 700
        lineHeight: 22
        color: Theme.ink(card.shown.color)
    }
    AppText {
        anchors.right: parent.right
        anchors.rightMargin: 15
        anchors.baseline: total.baseline
        visible: card.shown.isFound
        text: card.shown.items
        role: AppText.Role.Caption
        color: Theme.text2
    }
    SymbolIcon {
        x: 17
        y: 152
        visible: card.shown.isClean
        name: "checkmark.shield.fill"
        size: 14
        color: Theme.ink("green")
    }
    AppText {
        x: 39
        y: 150
        visible: card.shown.isClean
        text: "Nothing found"
        color: Theme.text2
    }
    AppButton {
        id: button
        objectName: card.shown.title + " button"
        x: 15
        y: 147
        width: parent.width - 30
        visible: !card.shown.isClean
        small: true
        label: card.shown.isFound ? "Review & Clean" : "Scan"
        symbol: card.shown.isFound ? "sparkles" : ""
        enabled: card.shown.isFound || !card.shown.isScanning
        Accessible.description: card.shown.title
        onClicked: card.shown.isFound ? card.clean() : card.scan()
    }
}
