import QtQuick
import Kestavon.Ui

/// The dialogs of a screen's Confirmation.
Item {
    id: dialogs

    required property Confirmation confirmation
    /// The title of the alert when a deed failed.
    property string errorTitle: "Operation Failed"

    function showQuestion() {
        if (confirmation.asking)
            question.open();
        else
            question.close();
    }
    function showError() {
        if (confirmation.errorMessage === "")
            return;
        alert.message = confirmation.errorMessage;
        alert.open();
    }

    // A deed may have failed while another section was shown.
    Component.onCompleted: showError()
    Component.onDestruction: confirmation.cancel()

    ConfirmDialog {
        id: question
        objectName: "question"
        title: dialogs.confirmation.title
        message: dialogs.confirmation.message
        actionLabel: dialogs.confirmation.action
        destructive: dialogs.confirmation.destructive
        alternativeLabel: dialogs.confirmation.alternative
        onConfirmed: dialogs.confirmation.confirm()
        onAlternativeConfirmed: dialogs.confirmation.confirmAlternative()
        onAboutToHide: withdrawal.restart()
    }
    // A moment after, because the dialog hides before it says that it was confirmed.
    Timer {
        id: withdrawal
        interval: 0
        onTriggered: dialogs.confirmation.cancel()
    }
    AlertDialog {
        id: alert
        objectName: "failure"
        title: dialogs.errorTitle
        onClosed: dialogs.confirmation.dismissError()
    }
    Connections {
        target: dialogs.confirmation
        function onAskingChanged() {
            dialogs.showQuestion();
        }
        function onErrorMessageChanged() {
            dialogs.showError();
        }
    }
}
