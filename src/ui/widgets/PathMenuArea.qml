import QtQuick
import Kestavon.Ui

/// Makes the item it is put into offer what can be done with the path that it shows: a right click
/// anywhere on the item, or the Menu key or Shift+F10 while the item has the keyboard; then Ctrl+C
/// copies the path at once.
///
///     PathMenuArea { actions: screen.ui.pathActions; path: row.path }
Item {
    id: area

    required property PathActions actions
    /// A FilePath; without one there is nothing to offer.
    property var path
    /// Where what the path names lies at the moment: it is what "Open" opens.
    property var itemPath: path
    /// The Tab key reaches the item while it offers something: for those that are in no list.
    property bool tabStop: false
    /// The keys are meant for this item. A list that keeps the keyboard says so for its current row.
    property bool focused: parent !== null && parent.activeFocus
    readonly property bool offered: path !== undefined && path !== null && !path.empty
    /// The menu is open: the item may show that it is the one meant.
    readonly property bool open: loader.item !== null && (loader.item as PathMenu).visible

    function openAt(x: real, y: real) {
        if (!offered)
            return;
        loader.active = true;
        const menu = loader.item as PathMenu;
        menu.path = path;
        menu.itemPath = itemPath;
        menu.popup(area, x, y);
    }

    anchors.fill: parent

    Binding {
        target: area.parent
        property: "activeFocusOnTab"
        when: area.tabStop
        value: area.offered
    }
    Loader {
        anchors.fill: parent
        active: area.tabStop && (area.focused || area.open)
        sourceComponent: Item {
            FocusRing {
                controlRadius: 4
            }
        }
    }
    TapHandler {
        acceptedButtons: Qt.RightButton
        acceptedModifiers: Qt.KeyboardModifierMask
        gesturePolicy: TapHandler.ReleaseWithinBounds
        enabled: area.offered
        onTapped: area.openAt(point.position.x, point.position.y)
    }
    Shortcut {
        sequences: ["Menu", "Shift+F10"]
        enabled: area.focused && area.offered && area.visible
        onActivated: area.openAt(28, area.height)
    }
    Shortcut {
        sequences: [StandardKey.Copy]
        enabled: area.focused && area.offered && area.visible
        onActivated: area.actions.copy(area.path)
    }
    Loader {
        id: loader
        active: false
        sourceComponent: PathMenu {
            actions: area.actions
        }
    }
}
