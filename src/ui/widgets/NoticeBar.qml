import QtQuick
import Kestavon.Ui

/// The quiet bar at the foot of the window; slides in while there is something to say.
Item {
    id: bar

    required property NoticeState notice

    implicitHeight: 44
    height: notice.shown ? implicitHeight : 0
    clip: true
    enabled: notice.shown
    visible: height > 0
    Accessible.role: Accessible.AlertMessage
    Accessible.name: notice.text
    Behavior on height {
        NumberAnimation {
            duration: bar.notice.shown ? Theme.barInTime : Theme.barOutTime
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
        SymbolIcon {
            x: 28
            anchors.verticalCenter: parent.verticalCenter
            name: "info.circle"
            size: 18
        }
        ElidedText {
            objectName: "noticeText"
            x: 54
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, buttons.x - x - 12)
            text: bar.notice.text
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Row {
            id: buttons
            anchors.right: parent.right
            anchors.rightMargin: 28
            anchors.verticalCenter: parent.verticalCenter
            spacing: 8
            AppButton {
                id: action
                objectName: "noticeAction"
                visible: label !== ""
                small: true
                label: bar.notice.action
                onClicked: bar.notice.act()
            }
            AppButton {
                id: dismiss
                objectName: "dismissNotice"
                small: true
                symbol: "xmark"
                kind: AppButton.Kind.Plain
                Accessible.name: "Dismiss"
                onClicked: bar.notice.dismiss()
            }
        }
    }
    // A pointer that merely rests where the bar came up does not hold it.
    HoverHandler {
        id: hover
        property point restedAt
        property bool isMeant: false
        onHoveredChanged: {
            isMeant = false;
            restedAt = point.scenePosition;
        }
        onPointChanged: {
            if (hovered && point.scenePosition !== restedAt)
                isMeant = true;
        }
    }
    Binding {
        target: bar.notice
        property: "held"
        value: bar.notice.shown && (hover.isMeant || action.activeFocus || dismiss.activeFocus)
    }
}
