import QtQuick
import Kestavon.Ui

/// One section in the sidebar, with the title of its group above the group's first.
Item {
    id: row

    required property int index
    required property string group
    required property string title
    required property string symbol
    required property string badge
    required property string badgeColor
    required property bool selected
    required property string accessibleName
    /// The list has the keyboard, and whether it was used.
    property bool listFocused: false
    property bool keyboardFocus: false

    signal activated

    readonly property int groupHeight: group === "" ? 0 : index === 0 ? 27 : 35

    implicitHeight: groupHeight + 33

    AppText {
        x: 20
        y: row.groupHeight - 19
        visible: row.group !== ""
        text: row.group
        role: AppText.Role.Micro
        color: Theme.text3
    }
    Item {
        x: 10
        y: row.groupHeight
        width: row.width - 21
        height: 32
        Accessible.role: Accessible.ListItem
        Accessible.name: row.accessibleName
        Accessible.selectable: true
        Accessible.selected: row.selected
        Accessible.focusable: true
        Accessible.focused: row.selected && row.listFocused
        Accessible.onPressAction: row.activated()

        HoverFill {
            anchors.fill: parent
            hovered: pointer.containsMouse && !row.selected
            pressed: pointer.pressed && !row.selected
        }
        Rectangle {
            anchors.fill: parent
            visible: row.selected
            radius: 8
            color: Theme.selectedSide
            border.width: 1
            border.color: Theme.selectedSideLine
            Rectangle {
                x: 4
                y: 9
                width: 3
                height: 14
                radius: 1.5
                color: Theme.accent
            }
        }
        FocusRing {
            visible: row.selected && row.keyboardFocus
            gap: -2
        }
        SymbolIcon {
            x: 12
            anchors.verticalCenter: parent.verticalCenter
            name: row.symbol
            size: 18
            color: row.selected ? Theme.accentInk : Theme.text2
        }
        AppText {
            x: 40
            anchors.verticalCenter: parent.verticalCenter
            anchors.verticalCenterOffset: -1
            text: row.title
            weight: row.selected ? 600 : 500
            Accessible.ignored: true
        }
        Rectangle {
            anchors.right: parent.right
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            visible: row.badge !== ""
            width: Math.max(22, Math.ceil(count.implicitWidth) + 12)
            height: 18
            radius: 9
            color: Theme.tint(Theme.graphic(row.badgeColor), 0.15)
            AppText {
                id: count
                anchors.centerIn: parent
                text: row.badge
                role: AppText.Role.Micro
                weight: 700
                color: Theme.ink(row.badgeColor)
                Accessible.ignored: true
            }
        }
        MouseArea {
            id: pointer
            anchors.fill: parent
            hoverEnabled: true
            onClicked: row.activated()
        }
    }
}
