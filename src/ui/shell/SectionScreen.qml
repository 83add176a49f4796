import QtQuick
import Kestavon.Ui

/// The root of every section's screen. Lives while its section is shown.
Item {
    required property UiStates ui

    /// Puts the keyboard into the screen's filter; a screen that has one says how.
    function focusFilter() {
    }
}
