import QtQuick
import QtQuick.Dialogs
import Kestavon.Ui

/// The desktop's own dialog for the choice of one folder. A file of its own, so that the dialog's
/// modules are loaded only for it.
Item {
    id: root

    property WindowFolderPicker picker: null

    function openAt(folder: url) {
        dialog.currentFolder = folder;
        dialog.open();
    }

    FolderDialog {
        id: dialog
        title: "Choose Folder"
        onAccepted: root.picker.accept(selectedFolder)
        onRejected: root.picker.cancel()
    }
}
