import QtQuick
import Kestavon.Ui

/// A question or a message: title, text, and buttons given as children: side by side, or below each
/// other in the dialog's whole width.
Sheet {
    id: dialog

    property string message
    property bool stacked: false
    /// Of buttons side by side: the first one is the rightmost.
    property bool fromRight: false
    readonly property real stackedWidth: width - 44
    default property alias buttons: row.data

    width: 420

    contentItem: Item {
        implicitHeight: row.y + row.height + 17

        Column {
            id: texts
            x: 21
            y: 21
            width: parent.width - 42
            spacing: 6
            AppText {
                width: parent.width
                text: dialog.title
                role: AppText.Role.DialogTitle
                wrapMode: Text.Wrap
            }
            AppText {
                width: parent.width
                visible: text !== ""
                text: dialog.message
                color: Theme.text2
                wrapMode: Text.Wrap
            }
        }
        Grid {
            id: row
            columns: dialog.stacked ? 1 : Math.max(1, children.length)
            layoutDirection: dialog.fromRight && !dialog.stacked ? Qt.RightToLeft : Qt.LeftToRight
            anchors.right: parent.right
            anchors.rightMargin: 21
            anchors.top: texts.bottom
            anchors.topMargin: 20
            spacing: dialog.stacked ? 8 : 10
        }
    }
}
