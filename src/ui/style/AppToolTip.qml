import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// A short text below the item under the pointer.
T.ToolTip {
    id: tip

    x: Math.round((parent ? parent.width - implicitWidth : 0) / 2)
    y: parent ? parent.height + 6 : 0
    implicitWidth: Math.min(480, Math.ceil(label.implicitWidth) + leftPadding + rightPadding)
    implicitHeight: contentHeight + topPadding + bottomPadding
    contentHeight: label.implicitHeight
    leftPadding: 9
    rightPadding: 9
    topPadding: 5
    bottomPadding: 5
    margins: 8
    delay: 600
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

    contentItem: AppText {
        id: label
        text: tip.text
        role: AppText.Role.Caption
        wrapMode: Text.Wrap
    }
    background: Rectangle {
        color: Theme.elevated
        radius: 7
        border.width: 1
        border.color: Theme.border
    }
}
