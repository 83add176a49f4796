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
    focusPolicy: Qt.TabFocus // a click leaves the keyboard to the menu
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    readonly property int accessibleRole: Accessible.ButtonMenu
    Accessible.role: accessibleRole
    Accessible.name: "Kestavon"
    Accessible.description: "Disk and memory"
    onClicked: {
        menu.active = true;
        const popup = menu.item as T.Popup;
        byKeyboard = visualFocus;
        if (popup.visible)
            popup.close();
        else
            popup.open();
    }

    /// The last click was made by key.
    property bool byKeyboard: false

    // The section that the menu was opened over is gone.
    Connections {
        target: statusItem.ui.shell
        enabled: menu.active
        function onSectionChanged() {
            (menu.item as T.Popup).close();
        }
    }

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
            readonly property string title: "Disk and memory"
            /// The keyboard went elsewhere by itself, and stays there.
            property bool wasLeft: false
            parent: statusItem
            y: -height - 6
            width: 220
            implicitHeight: implicitContentHeight + topPadding + bottomPadding
            padding: 1
            focus: true
            // Not by a press on the button either: its click closes the menu.
            closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
            onAboutToShow: {
                wasLeft = false;
                statusItem.status.refresh();
            }
            onOpened: {
                if (statusItem.byKeyboard)
                    (contentItem as MenuBarStatusView).takeKeyboard();
            }
            // While it is open, the window's keys are the menu's. Later, as it loses the keyboard
            // when it closes, too.
            onActiveFocusChanged: leaving.restart()
            readonly property Timer leaving: Timer {
                interval: 0
                onTriggered: {
                    if (!popup.opened || popup.activeFocus)
                        return;
                    popup.wasLeft = statusItem.Window.active;
                    popup.close();
                }
            }
            onClosed: {
                if (wasLeft)
                    return;
                statusItem.forceActiveFocus(Qt.PopupFocusReason);
                statusItem.focusReason = statusItem.byKeyboard ? Qt.TabFocusReason : Qt.PopupFocusReason;
            }
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
