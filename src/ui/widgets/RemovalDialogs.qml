import QtQuick
import Kestavon.Ui

/// The question before selected files are removed, and the alert when that failed.
Item {
    id: dialogs

    required property RecordRemoval removal

    ConfirmDialog {
        id: question
        objectName: "removalQuestion"
        title: dialogs.removal.title
        message: dialogs.removal.message
        actionLabel: dialogs.removal.action
        onConfirmed: dialogs.removal.confirm()
        onAboutToHide: withdrawal.restart()
    }
    // A moment after, because the dialog hides before it says that it was confirmed.
    Timer {
        id: withdrawal
        interval: 0
        onTriggered: dialogs.removal.cancel()
    }
    AlertDialog {
        id: alert
        objectName: "removalError"
        title: "Error"
        onClosed: dialogs.removal.dismissError()
    }
    Connections {
        target: dialogs.removal
        function onAskingChanged() {
            if (dialogs.removal.asking)
                question.open();
            else
                question.close();
        }
        function onErrorMessageChanged() {
            if (dialogs.removal.errorMessage === "")
                return;
            alert.message = dialogs.removal.errorMessage;
            alert.open();
        }
    }
}
