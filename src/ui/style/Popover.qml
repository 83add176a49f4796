import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// A few sentences below the control that asked for them; a click elsewhere or Escape closes it.
T.Popup {
    id: popover

    property string title
    property string message
    property string detail

    x: Math.round((parent ? parent.width - width : 0) / 2)
    y: parent ? parent.height + 4 : 0
    width: 320
    implicitHeight: texts.implicitHeight + topPadding + bottomPadding
    padding: 13
    margins: 8
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside

    contentItem: Column {
        id: texts
        focus: true
        spacing: 4
        AppText {
            width: parent.width
            text: popover.title
            weight: 600
            wrapMode: Text.Wrap
        }
        AppText {
            width: parent.width
            text: popover.message
            wrapMode: Text.Wrap
        }
        AppText {
            width: parent.width
            visible: text !== ""
            text: popover.detail
            role: AppText.Role.Caption
            color: Theme.text2
            wrapMode: Text.WrapAnywhere
        }
    }
    background: Rectangle {
        radius: 11
        color: Theme.elevated
        border.width: 1
        border.color: Theme.border
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.hoverTime }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; from: 1; to: 0; duration: Theme.hoverTime }
    }
}
