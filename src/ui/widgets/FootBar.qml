import QtQuick
import Kestavon.Ui

/// A quiet bar at the foot of the window; slides in while it is shown.
Item {
    id: bar

    required property bool shown
    required property string text
    property string textName
    /// What stands before the text, 18 pixels wide.
    property alias symbol: symbolPlace.sourceComponent
    /// Buttons and the like, at the right.
    property alias trailing: trailingRow.data

    implicitHeight: 44
    height: shown ? implicitHeight : 0
    clip: true
    enabled: shown
    visible: height > 0
    Behavior on height {
        NumberAnimation {
            duration: bar.shown ? Theme.barInTime : Theme.barOutTime
            easing.type: Easing.OutCubic
        }
    }

    Rectangle {
        width: parent.width
        height: bar.implicitHeight
        color: Theme.elevated
        Rectangle {
            width: parent.width
            height: 1
            color: Theme.border
        }
        Loader {
            id: symbolPlace
            x: 28
            anchors.verticalCenter: parent.verticalCenter
            active: bar.visible
        }
        ElidedText {
            objectName: bar.textName
            x: 54
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, trailingRow.x - x - 12)
            text: bar.text
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Row {
            id: trailingRow
            anchors.right: parent.right
            anchors.rightMargin: 28
            height: parent.height
            spacing: 8
        }
    }
}
