import QtQuick
import Kestavon.Ui

/// One section in the sidebar, with the title of its group above the group's first. The sidebar
/// draws what marks the selected one. What few rows have is made for those only: there is a row for
/// every section before the window's first frame.
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
    /// The list has the keyboard.
    property bool listFocused: false

    signal activated

    readonly property int groupHeight: group === "" ? 0 : index === 0 ? 27 : 35

    implicitHeight: groupHeight + 33

    Loader {
        x: 20
        y: row.groupHeight - 19
        active: row.group !== ""
        sourceComponent: AppText {
            text: row.group
            role: AppText.Role.Micro
            color: Theme.text3
        }
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
        AccessibleRow {
            row: row.index
            focused: row.selected && row.listFocused
            selected: row.selected
        }

        Loader {
            readonly property bool hovered: pointer.containsMouse
            anchors.fill: parent
            active: false
            onHoveredChanged: active = true
            sourceComponent: HoverFill {
                hovered: pointer.containsMouse && !row.selected
                pressed: pointer.pressed && !row.selected
            }
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
        Loader {
            anchors.right: parent.right
            anchors.rightMargin: 10
            anchors.verticalCenter: parent.verticalCenter
            active: row.badge !== ""
            sourceComponent: Rectangle {
                implicitWidth: Math.max(22, Math.ceil(count.implicitWidth) + 12)
                implicitHeight: 18
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
        }
        MouseArea {
            id: pointer
            anchors.fill: parent
            hoverEnabled: true
            onClicked: row.activated()
        }
    }
}
