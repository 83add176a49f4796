import QtQuick
import Kestavon.Ui

/// What a screen shows when it has nothing to show: a symbol, a sentence, perhaps a button below.
Item {
    id: empty

    property string symbol // none: the sentence stands alone
    property color symbolColor: Theme.text3
    property string title
    property string message
    default property alias actions: row.data

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.round((parent.height - 40 - height) / 2)
        SymbolIcon {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: empty.symbol !== ""
            name: empty.symbol
            size: 72
            color: empty.symbolColor
        }
        Item { width: 1; height: 14; visible: empty.symbol !== "" }
        AppText {
            anchors.horizontalCenter: parent.horizontalCenter
            text: empty.title
            role: AppText.Role.EmptyTitle
        }
        Item { width: 1; height: 4; visible: empty.message !== "" }
        AppText {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(400, implicitWidth)
            visible: text !== ""
            text: empty.message
            color: Theme.text2
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
        Item { width: 1; height: 18; visible: row.visibleChildren.length > 0 }
        Row {
            id: row
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 8
        }
    }
}
