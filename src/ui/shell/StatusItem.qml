import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// The status item at the foot of the sidebar, for desktops with and without a tray: opens the
/// same menu.
T.AbstractButton {
    id: statusItem

    objectName: "statusItem"

    required property UiStates ui
    readonly property StatusState status: ui.status

    implicitHeight: 32
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Accessible.role: Accessible.ButtonMenu
    Accessible.name: "Kestavon"
    Accessible.description: "Disk and memory"
    // A press outside closes the menu, and a press here is outside: it must not open it again.
    onPressed: wasOpen = menu.active && (menu.item as T.Popup).visible
    onClicked: {
        if (wasOpen)
            return;
        menu.active = true;
        (menu.item as T.Popup).open();
    }

    property bool wasOpen: false

    background: Item {
        HoverFill {
            anchors.fill: parent
            hovered: statusItem.hovered
            pressed: statusItem.pressed
        }
        FocusRing {
            visible: statusItem.visualFocus
            gap: -2
        }
    }
    contentItem: Item {
        SymbolIcon {
            x: 12
            anchors.verticalCenter: parent.verticalCenter
            name: statusItem.status.symbol
            size: 18
            color: Theme.graphic(statusItem.status.symbolColor)
        }
        AppText {
            x: 40
            anchors.verticalCenter: parent.verticalCenter
            text: "Kestavon"
            weight: 500
            Accessible.ignored: true
        }
        SymbolIcon {
            anchors.right: parent.right
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            name: "chevron.up.chevron.down"
            size: 16
            color: Theme.text3
        }
    }
    Loader {
        id: menu
        active: false
        sourceComponent: T.Popup {
            id: popup
            parent: statusItem
            y: -height - 6
            width: 220
            implicitHeight: implicitContentHeight + topPadding + bottomPadding
            padding: 1
            focus: true
            closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
            onAboutToShow: statusItem.status.refresh()
            onClosed: statusItem.forceActiveFocus(Qt.PopupFocusReason)
            background: Rectangle {
                radius: 11
                color: Theme.elevated
                border.width: 1
                border.color: Theme.border
            }
            contentItem: MenuBarStatusView {
                ui: statusItem.ui
                focus: true
                onDone: popup.close()
            }
        }
    }
}
