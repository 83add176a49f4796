import QtQuick
import Kestavon.Ui

/// Asks before something that cannot be undone, or not easily. Every such question of the program
/// is asked with this. Cancel has the keyboard; Escape cancels too.
AppDialog {
    id: dialog

    /// What the button that goes ahead says.
    required property string actionLabel
    property bool destructive: true

    /// The user said yes; the dialog has begun to close.
    signal confirmed

    initialFocus: cancel

    AppButton {
        id: cancel
        objectName: "cancel"
        label: "Cancel"
        onClicked: dialog.close()
    }
    AppButton {
        objectName: "confirm"
        label: dialog.actionLabel
        kind: dialog.destructive ? AppButton.Kind.DestructiveProminent : AppButton.Kind.Prominent
        onClicked: {
            dialog.close();
            dialog.confirmed();
        }
    }
}
