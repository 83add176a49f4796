import QtQuick
import Kestavon.Ui

/// What can be done with the selected rows of the table above; slides in while `shown`.
Item {
    id: bar

    required property bool shown
    /// "3 selected · 57.91 GB"
    required property string summary

    signal clear
    signal trash
    signal deleteForever

    implicitHeight: 60
    // What the bar takes of the screen's height; the table above ends there.
    height: shown ? implicitHeight : 0
    clip: true
    enabled: shown
    visible: height > 0
    Accessible.role: Accessible.ToolBar
    Accessible.name: "Selection"
    Behavior on height {
        NumberAnimation {
            duration: bar.shown ? Theme.barInTime : Theme.barOutTime
            easing.type: Easing.OutCubic
        }
    }

    Rectangle {
        width: parent.width
        height: 60
        color: Theme.elevated
        Rectangle {
            width: parent.width
            height: 1
            color: Theme.border
        }
        SymbolIcon {
            x: 28
            anchors.verticalCenter: parent.verticalCenter
            name: "checkmark.circle.fill"
            size: 18
            color: Theme.accentInk
        }
        AppText {
            objectName: "selectionSummary"
            x: 54
            anchors.verticalCenter: parent.verticalCenter
            width: actions.x - x - 12
            text: bar.summary
            weight: 600
            elide: Text.ElideRight
        }
        Row {
            id: actions
            anchors.right: parent.right
            anchors.rightMargin: 28
            anchors.verticalCenter: parent.verticalCenter
            spacing: 8
            AppButton {
                objectName: "clearSelection"
                label: "Clear"
                kind: AppButton.Kind.Plain
                onClicked: bar.clear()
            }
            AppButton {
                objectName: "moveToTrash"
                label: "Move to Trash"
                symbol: "trash"
                onClicked: bar.trash()
            }
            AppButton {
                objectName: "deleteForever"
                label: "Delete Forever"
                symbol: "trash.fill"
                kind: AppButton.Kind.DestructiveProminent
                onClicked: bar.deleteForever()
            }
        }
    }
}
