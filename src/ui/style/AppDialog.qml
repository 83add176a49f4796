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

        AppText {
            id: heading
            x: 21
            y: 21
            width: parent.width - 42
            text: dialog.title
            role: AppText.Role.DialogTitle
            wrapMode: Text.Wrap
        }
        AppText {
            id: body
            x: 21
            anchors.top: heading.bottom
            anchors.topMargin: visible ? 6 : 0
            width: parent.width - 42
            height: visible ? implicitHeight : 0
            visible: text !== ""
            text: dialog.message
            color: Theme.text2
            wrapMode: Text.Wrap
        }
        Row {
            id: row
            anchors.right: parent.right
            anchors.rightMargin: 21
            anchors.top: body.bottom
            anchors.topMargin: 20
            spacing: 10
        }
    }
}
