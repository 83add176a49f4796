import QtQuick
import Kestavon.Ui

/// Shows the screen of the selected section; only that one is alive.
FocusScope {
    id: detail

    required property UiStates ui
    readonly property url screen: ui.shell.screen

    function focusFilter() {
        const shown = loader.item as SectionScreen;
        if (shown)
            shown.focusFilter();
    }
    function load() {
        loader.setSource(screen, { ui: ui });
    }

    onScreenChanged: load()
    Component.onCompleted: load()

    Loader {
        id: loader
        anchors.fill: parent
        focus: true
    }
}
