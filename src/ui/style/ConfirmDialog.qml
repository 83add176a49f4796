import QtQuick
import Kestavon.Ui

/// Asks before something that cannot be undone, or not easily. Every such question of the program
/// is asked with this. Cancel has the keyboard; Escape cancels too.
AppDialog {
    id: dialog

    /// What the button that goes ahead says.
    required property string actionLabel
    property bool destructive: true
    /// What a button says that goes ahead in another way; empty: there is none.
    property string alternativeLabel

    /// The user said yes; the dialog has begun to close.
    signal confirmed
    /// The same in the other way.
    signal alternativeConfirmed

    initialFocus: cancel
    stacked: alternativeLabel !== ""
    fromRight: true

    AppButton {
        objectName: "confirm"
        width: dialog.stacked ? dialog.stackedWidth : implicitWidth
        label: dialog.actionLabel
        kind: dialog.destructive ? AppButton.Kind.DestructiveProminent : AppButton.Kind.Prominent
        onClicked: {
            dialog.close();
            dialog.confirmed();
        }
    }
    AppButton {
        objectName: "alternative"
        width: dialog.stackedWidth
        visible: dialog.stacked
        label: dialog.alternativeLabel
        onClicked: {
            dialog.close();
            dialog.alternativeConfirmed();
        }
    }
    AppButton {
        id: cancel
        objectName: "cancel"
        width: dialog.stacked ? dialog.stackedWidth : implicitWidth
        label: "Cancel"
        onClicked: dialog.close()
    }
}
