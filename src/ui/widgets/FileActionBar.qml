import QtQuick
import Kestavon.Ui

/// What can be done with the selected rows of the table above; slides in while `shown`.
FocusScope {
    id: bar

    required property bool shown
    /// "3 selected · 57.91 GB"
    required property string summary
    /// Selected rows are in sight.
    required property bool canRemove

    signal clear
    signal trash
    signal deleteForever
    /// The bar goes while one of its buttons has the keyboard.
    signal keyboardLeft

    implicitHeight: 60
    // What the bar takes of the screen's height; the table above ends there.
    height: shown ? implicitHeight : 0
    clip: true
    enabled: false
    visible: height > 0
    onShownChanged: followShown()
    Component.onCompleted: followShown()

    function followShown() {
        const hadKeyboard = activeFocus;
        enabled = shown;
        if (hadKeyboard && !shown)
            keyboardLeft();
    }
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
                enabled: bar.canRemove
                onClicked: bar.trash()
            }
            AppButton {
                objectName: "deleteForever"
                label: "Delete Forever"
                symbol: "trash.fill"
                enabled: bar.canRemove
                kind: AppButton.Kind.DestructiveProminent
                onClicked: bar.deleteForever()
            }
        }
    }
}
