import QtQuick
import QtQuick.Templates as T
import Kestavon.Ui

/// The main window: sidebar, toolbar and the shown section's screen.
T.ApplicationWindow {
    id: window

    required property UiStates ui
    /// "light", "dark", or empty to follow the desktop.
    property string themeChoice
    property bool reducedMotion: false

    title: "Kestavon"
    width: 1280
    height: 820
    minimumWidth: 1180
    minimumHeight: 760
    color: Theme.bg

    Component.onCompleted: {
        Theme.choice = themeChoice;
        Theme.reducedMotion = reducedMotion;
        visible = true;
    }

    AppText {
        anchors.centerIn: parent
        text: "Kestavon"
        role: AppText.Role.PageTitle
    }
}
