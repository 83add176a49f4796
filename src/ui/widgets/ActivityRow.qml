import QtQuick
import Kestavon.Ui

/// One event of the activity history.
Item {
    id: row

    required property string title
    required property string detail
    /// "5 minutes ago"
    required property string age
    /// A FilePath, where the detail is a path.
    required property var path
    required property PathActions pathActions

    implicitHeight: 50
    Accessible.role: Accessible.ListItem
    Accessible.focusable: activeFocusOnTab
    Accessible.name: title + ", " + detail + ", " + age

    Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        width: 8
        height: 8
        radius: 4
        color: Theme.accent
    }
    ElidedText {
        x: 20
        y: Math.round((parent.height - 34) / 2)
        width: Math.min(implicitWidth, when.x - x - 12)
        text: row.title
        weight: 500
        Accessible.ignored: true
    }
    ElidedText {
        x: 20
        y: Math.round((parent.height - 34) / 2) + 18
        width: Math.min(implicitWidth, when.x - x - 12)
        text: row.detail
        role: AppText.Role.Caption
        color: Theme.text2
        Accessible.ignored: true
    }
    AppText {
        id: when
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        text: row.age
        role: AppText.Role.Caption
        color: Theme.text3
        Accessible.ignored: true
    }
    PathMenuArea {
        tabStop: true
        actions: row.pathActions
        path: row.path
    }
}
