import QtQuick
import Kestavon.Ui

/// A question or a message: title, text, and a row of buttons given as children, leftmost first.
Sheet {
    id: dialog

    property string message
    default property alias buttons: row.data

    width: 420

    contentItem: Item {
        implicitHeight: row.y + row.height + 17
        Accessible.role: Accessible.Dialog
        Accessible.name: dialog.title
        Accessible.description: dialog.message

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
        Row {
            id: row
            anchors.right: parent.right
            anchors.rightMargin: 21
            anchors.top: texts.bottom
            anchors.topMargin: 20
            spacing: 10
        }
    }
}
