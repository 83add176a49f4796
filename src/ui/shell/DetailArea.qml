import QtQuick
import Kestavon.Ui

/// Shows the screen of the selected section; only that one is alive. Stays empty until `begin`, so
/// that the window is there before the first screen is made.
FocusScope {
    id: detail

    required property UiStates ui
    readonly property url screen: ui.shell.screen
    property bool begun: false

    function focusFilter() {
        const shown = loader.item as SectionScreen;
        if (shown)
            shown.focusFilter();
    }
    function begin() {
        if (begun)
            return;
        begun = true;
        load();
    }
    function load() {
        if (begun)
            loader.setSource(screen, { ui: ui });
    }

    onScreenChanged: load()

    Loader {
        id: loader
        anchors.fill: parent
        focus: true
    }
}
