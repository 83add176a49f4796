import QtQuick
import Kestavon.Ui

/// The root of every section's screen. Lives while its section is shown.
Item {
    required property UiStates ui
    /// Whether its window can be seen: closed to the tray or minimised, nothing is read again.
    readonly property bool onScreen: Window.visibility !== Window.Hidden
        && Window.visibility !== Window.Minimized

    /// Puts the keyboard into the screen's filter; a screen that has one says how.
    function focusFilter() {
    }
}
