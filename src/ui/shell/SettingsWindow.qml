import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// Settings in a window of its own.
T.ApplicationWindow {
    id: window

    property UiStates ui: null

    function bringToFront() {
        if (!visible || visibility === Window.Minimized)
            showNormal();
        raise();
        requestActivate();
    }

    title: "Settings"
    width: 688
    height: 520
    minimumWidth: 688
    minimumHeight: 400
    color: Theme.bg

    Loader {
        anchors.fill: parent
        active: window.ui !== null
        sourceComponent: SettingsView {
            ui: window.ui
        }
    }
    Shortcut {
        sequences: [StandardKey.Cancel, StandardKey.Close]
        onActivated: window.close()
    }
}
