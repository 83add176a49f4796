import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// The list of sections, on a surface that the window draws. One stop of the Tab key; the arrows
/// move the selection.
T.Control {
    id: sidebar
    objectName: "sidebar"

    required property UiStates ui
    readonly property ShellState shell: ui.shell
    readonly property int accessibleRole: Accessible.List

    function move(row: int) {
        focusReason = Qt.TabFocusReason; // from here on the keyboard is in use
        shell.showRow(Math.max(0, Math.min(rows.count - 1, row)));
    }

    implicitWidth: Theme.sidebarWidth
    focusPolicy: Qt.TabFocus
    Keys.onUpPressed: move(shell.row - 1)
    Keys.onDownPressed: move(shell.row + 1)
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home)
            move(0);
        else if (event.key === Qt.Key_End)
            move(rows.count - 1);
        else
            return;
        event.accepted = true;
    }
    Accessible.role: accessibleRole
    Accessible.name: "Sections"

    SymbolIcon {
        x: 18
        y: 13
        name: "kestavon"
        size: 26
        source: "image://symbol/kestavon"
    }
    AppText {
        x: 54
        y: 16
        text: "Kestavon"
        role: AppText.Role.DialogTitle
        display: true
        weight: 700
        font.letterSpacing: -0.1
    }
    Rectangle {
        id: mark
        readonly property SidebarRow row: rows.count > sidebar.shell.row ? rows.itemAt(sidebar.shell.row) as SidebarRow
                                                                         : null
        x: 10
        y: row ? sections.y + row.y + row.groupHeight : 0
        visible: row !== null
        width: parent.width - 21
        height: 32
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
        FocusRing {
            visible: sidebar.visualFocus
            gap: -2
        }
    }
    Column {
        id: sections
        y: 52
        width: parent.width
        Repeater {
            id: rows
            model: sidebar.shell.sidebar
            SidebarRow {
                width: sidebar.width
                listFocused: sidebar.activeFocus
                onActivated: {
                    sidebar.forceActiveFocus(Qt.MouseFocusReason);
                    sidebar.shell.showRow(index);
                }
            }
        }
    }
    StatusItem {
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 10
        x: 10
        width: parent.width - 21
        ui: sidebar.ui
    }
}
