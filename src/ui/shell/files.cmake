list(APPEND ui_state_sources
    shell/folder_chooser.cpp shell/folder_chooser.h
    shell/onboarding_state.cpp shell/onboarding_state.h
    shell/product_links.h
    shell/settings_state.cpp shell/settings_state.h
    shell/shell_rules.cpp shell/shell_rules.h
    shell/shell_state.cpp shell/shell_state.h
    shell/sidebar_model.cpp shell/sidebar_model.h
    shell/status_state.cpp shell/status_state.h
    shell/single_instance.cpp shell/single_instance.h
    shell/undo_state.cpp shell/undo_state.h
    shell/window_folder_picker.cpp shell/window_folder_picker.h
    shell/work_state.cpp shell/work_state.h)
list(APPEND ui_module_sources shell/desktop_dialogs.cpp shell/desktop_dialogs.h shell/shell_types.h)
list(APPEND ui_qml_files
    shell/ContentView.qml
    shell/DetailArea.qml
    shell/FDAOnboardingSheet.qml
    shell/FolderPickerDialog.qml
    shell/FolderSheet.qml
    shell/FullDiskAccessBanner.qml
    shell/Main.qml
    shell/MainShortcuts.qml
    shell/MenuBarStatusView.qml
    shell/SectionScreen.qml
    shell/SettingsView.qml
    shell/SettingsWindow.qml
    shell/ShortcutsSheet.qml
    shell/Sidebar.qml
    shell/SidebarRow.qml
    shell/StatusItem.qml
    shell/StatusWindow.qml
    shell/Toolbar.qml
    shell/UnbuiltScreen.qml
    shell/WorkBar.qml)
