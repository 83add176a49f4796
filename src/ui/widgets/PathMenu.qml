import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// What can be done with one path. It is about the path that it was opened with, whatever is shown
/// in its place meanwhile.
T.Menu {
    id: menu

    required property PathActions actions
    property var path // a FilePath
    property var itemPath // what "Open" opens

    title: "Path" // for screen readers
    implicitWidth: 200
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 6
    margins: 8
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside

    component Choice: T.MenuItem {
        id: choice
        implicitWidth: 188
        implicitHeight: 30
        Accessible.role: Accessible.MenuItem
        Accessible.name: text
        background: Rectangle {
            radius: 7
            visible: choice.highlighted
            color: choice.pressed ? Theme.accentSolidPress : Theme.accentSolid
        }
        contentItem: AppText {
            leftPadding: 8
            text: choice.text
            color: choice.highlighted ? Theme.onSolid : Theme.text
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
    }

    Choice {
        objectName: "openPath"
        text: "Open"
        onTriggered: menu.actions.open(menu.itemPath)
    }
    Choice {
        objectName: "openPathFolder"
        text: "Open Folder"
        onTriggered: menu.actions.openFolder(menu.path)
    }
    Choice {
        objectName: "copyPath"
        text: "Copy Path"
        onTriggered: menu.actions.copy(menu.path)
    }

    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        currentIndex: menu.currentIndex
        interactive: false
    }
    background: Rectangle {
        radius: 11
        color: Theme.elevated
        border.width: 1
        border.color: Theme.border
    }
}
