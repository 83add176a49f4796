import QtQuick
import Kestavon.Ui

/// The question before selected files are removed, and the alert when that failed.
Item {
    id: dialogs

    required property RecordRemoval removal

    /// The question is gone, and the keyboard is back where it came from.
    signal answered

    function showError() {
        if (removal.errorMessage === "")
            return;
        alert.message = removal.errorMessage;
        alert.open();
    }

    // A removal may have failed while another section was shown.
    Component.onCompleted: showError()

    ConfirmDialog {
        id: question
        objectName: "removalQuestion"
        title: dialogs.removal.title
        message: dialogs.removal.message
        actionLabel: dialogs.removal.action
        onConfirmed: dialogs.removal.confirm()
        onAboutToHide: withdrawal.restart()
        onClosed: dialogs.answered()
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
            dialogs.showError();
        }
    }
}
