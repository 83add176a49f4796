import QtQuick
import Kestavon.Ui

/// A sentence that needs no answer, at the foot of the window, sometimes with one thing to do.
FootBar {
    id: bar

    required property NoticeState notice

    shown: notice.shown
    text: notice.text
    textName: "noticeText"
    Accessible.role: Accessible.AlertMessage
    Accessible.name: notice.text
    symbol: SymbolIcon {
        name: "info.circle"
        size: 18
    }
    trailing: [
        AppButton {
            id: action
            objectName: "noticeAction"
            anchors.verticalCenter: parent.verticalCenter
            visible: label !== ""
            small: true
            label: bar.notice.action
            onClicked: bar.notice.act()
        },
        AppButton {
            id: dismiss
            objectName: "dismissNotice"
            anchors.verticalCenter: parent.verticalCenter
            small: true
            symbol: "xmark"
            kind: AppButton.Kind.Plain
            Accessible.name: "Dismiss"
            onClicked: bar.notice.dismiss()
        }
    ]

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
