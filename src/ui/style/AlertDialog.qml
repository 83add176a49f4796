import QtQuick
import Kestavon.Ui

/// Tells the outcome of something; one button.
AppDialog {
    id: dialog

    initialFocus: ok

    AppButton {
        id: ok
        objectName: "ok"
        label: "OK"
        kind: AppButton.Kind.Prominent
        onClicked: dialog.close()
    }
}
