import QtQuick
import Kestavon.Ui

/// What the main window holds: sidebar, toolbar and the shown section's screen, the bar with the
/// last notice, and over all of it the sheet that asks once for access.
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
        anchors.bottom: noticeBar.top
        ui: view.ui
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
        notice: view.ui.notice
        onFilterRequested: detail.focusFilter()
        onSettingsRequested: view.settingsRequested()
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
