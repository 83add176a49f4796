import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// The main window and what it opens beside itself, which is loaded when it is needed.
T.ApplicationWindow {
    id: window

    required property UiStates ui
    /// "light", "dark", or empty to follow the desktop.
    property string themeChoice
    property bool reducedMotion: false
    /// As `DesktopAppearance.colorScheme`.
    property int desktopScheme: 0
    /// The window has drawn a frame since it was last shown, and holds what it is to hold.
    property bool hasAppeared: false
    /// How the window was shown when it was last to be seen.
    property int lastVisibility: Window.Windowed

    title: "Kestavon"
    width: 1280
    height: 820
    minimumWidth: 1180
    minimumHeight: 760
    color: Theme.bg
    palette {
        window: Theme.bg
        windowText: Theme.text
        base: Theme.surface
        alternateBase: Theme.sunken
        text: Theme.text
        button: Theme.button
        buttonText: Theme.text
        highlight: Theme.accentSolid
        highlightedText: Theme.onSolid
        light: Theme.surface
        midlight: Theme.hover
        mid: Theme.border
        dark: Theme.text2
        placeholderText: Theme.text3
        link: Theme.accentInk
    }

    /// Builds what the window holds, once it is there itself.
    function fill() {
        if (!visible)
            return;
        if (content.status === Loader.Null)
            content.setSource("ContentView.qml", { ui: ui });
        hasAppeared = true;
        ui.onboarding.windowAppeared();
    }
    function bringToFront() {
        // Not show(): that would shrink a window that fills the screen.
        if (!visible || visibility === Window.Minimized)
            visibility = lastVisibility;
        raise();
        requestActivate();
    }
    function showSettingsWindow() {
        settingsWindow.active = true;
        (settingsWindow.item as SettingsWindow).bringToFront();
    }

    Component.onCompleted: {
        Theme.choice = themeChoice;
        Theme.reducedMotion = Qt.binding(() => window.reducedMotion);
        Theme.desktopScheme = Qt.binding(() => window.desktopScheme);
        visible = true;
    }
    onFrameSwapped: {
        if (!hasAppeared)
            filling.start();
    }
    onVisibilityChanged: visibility => {
        if (visibility !== Window.Hidden && visibility !== Window.Minimized)
            lastVisibility = visibility;
    }
    onVisibleChanged: {
        if (!visible)
            hasAppeared = false;
    }

    Timer { // for the time behind the frame
        id: filling
        interval: 0
        onTriggered: window.fill()
    }
    // The surfaces of the sidebar and the toolbar: all that the first frame needs.
    Rectangle {
        width: Theme.sidebarWidth
        height: parent.height
        color: Theme.sidebar
        Hairline {
            anchors.right: parent.right
            height: parent.height
        }
    }
    Hairline {
        x: Theme.sidebarWidth
        y: Theme.toolbarHeight - 1
        width: parent.width - x
    }
    Loader {
        id: content
        anchors.fill: parent
        focus: true
        onLoaded: (item as ContentView).settingsRequested.connect(window.showSettingsWindow)
    }

    Loader {
        id: folderDialog
        active: false
        source: "FolderPickerDialog.qml"
        onLoaded: (item as FolderPickerDialog).picker = window.ui.shell.folderPicker
    }
    Loader {
        id: folderSheet
        active: false
        sourceComponent: FolderSheet {
            ui: window.ui
        }
    }
    Connections {
        target: window.ui.shell.folderPicker
        function onPickRequested(folder) {
            if (DesktopDialogs.hasFolderDialog) {
                folderDialog.active = true;
                (folderDialog.item as FolderPickerDialog).openAt(folder);
            } else {
                folderSheet.active = true;
                (folderSheet.item as FolderSheet).openAt(folder);
            }
        }
    }

    Loader {
        id: settingsWindow
        active: false
        source: "SettingsWindow.qml"
        onLoaded: (item as SettingsWindow).ui = window.ui
    }

    Loader {
        id: statusWindow
        active: false
        source: "StatusWindow.qml"
        onLoaded: (item as StatusWindow).ui = window.ui
    }
    Connections {
        target: window.ui.status
        function onMenuRequested(x, y) {
            statusWindow.active = true;
            (statusWindow.item as StatusWindow).openNear(x, y);
        }
    }
    Connections {
        target: window.ui.shell
        function onRaiseRequested() {
            window.bringToFront();
        }
        function onFailed(reason) {
            failure.active = true;
            (failure.item as AlertDialog).message = reason;
            (failure.item as AlertDialog).open();
        }
    }
    Loader {
        id: failure
        active: false
        sourceComponent: AlertDialog {
            title: "Error"
        }
    }
}
