import QtQuick
import Kestavon.Ui

/// One figure: a symbol, the value, and what it is a value of.
Card {
    id: card

    required property string title
    required property string value
    required property string symbol
    /// A colour's name.
    required property string accent

    implicitHeight: 131
    Accessible.role: Accessible.StaticText
    Accessible.name: card.title + ": " + spokenValue.text

    SpokenText {
        id: spokenValue
        source: card.value
    }
    SymbolTile {
        x: 19
        y: 17
        symbol: card.symbol
        colorName: card.accent
    }
    AppText {
        x: 19
        y: 64
        width: parent.width - 38
        text: card.value
        role: AppText.Role.Metric
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    AppText {
        x: 19
        y: 97
        width: parent.width - 38
        text: card.title
        color: Theme.text2
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
