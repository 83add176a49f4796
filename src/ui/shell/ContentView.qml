import QtQuick
import Kestavon.Ui

/// What the main window holds: sidebar, toolbar and the shown section's screen, bars at its
/// foot with what goes on and what was done, and over all of it the sheet that asks once for access.
Item {
    id: view

    required property UiStates ui
    readonly property bool showFDAOnboarding: ui.onboarding.isPresented

    signal settingsRequested

    Sidebar {
        id: sidebar
        height: parent.height
        ui: view.ui
    }
    Toolbar {
        id: toolbar
        anchors.left: sidebar.right
        anchors.right: parent.right
        shell: view.ui.shell
    }
    DetailArea {
        id: detail
        anchors.left: sidebar.right
        anchors.right: parent.right
        anchors.top: toolbar.bottom
        anchors.bottom: workBar.top
        ui: view.ui
    }
    WorkBar {
        id: workBar
        objectName: "workBar"
        anchors.left: sidebar.right
        anchors.right: parent.right
        anchors.bottom: undoBar.top
        work: view.ui.work
    }
    NoticeBar {
        id: undoBar
        objectName: "undoBar"
        anchors.left: sidebar.right
        anchors.right: parent.right
        anchors.bottom: noticeBar.top
        notice: view.ui.undoOffer
    }
    NoticeBar {
        id: noticeBar
        objectName: "noticeBar"
        anchors.left: sidebar.right
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        notice: view.ui.notice
    }
    MainShortcuts {
        shell: view.ui.shell
        undoOffer: view.ui.undoOffer
        work: view.ui.work
        duplicates: view.ui.duplicates
        smartClean: view.ui.smartClean
        onFilterRequested: detail.focusFilter()
        onSettingsRequested: view.settingsRequested()
        onHelpRequested: {
            shortcutsSheet.active = true;
            (shortcutsSheet.item as ShortcutsSheet).open();
        }
    }
    Loader {
        id: shortcutsSheet
        active: false
        source: "ShortcutsSheet.qml"
    }

    Loader {
        id: onboardingSheet
        active: false
        source: "FDAOnboardingSheet.qml"
        onLoaded: (item as FDAOnboardingSheet).onboarding = view.ui.onboarding
    }
    onShowFDAOnboardingChanged: {
        if (showFDAOnboarding)
            onboardingSheet.active = true;
    }
}
