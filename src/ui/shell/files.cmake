list(APPEND ui_state_sources
    shell/onboarding_state.cpp shell/onboarding_state.h
    shell/product_links.h
    shell/settings_state.cpp shell/settings_state.h
    shell/shell_rules.cpp shell/shell_rules.h
    shell/shell_state.cpp shell/shell_state.h
    shell/sidebar_model.cpp shell/sidebar_model.h
    shell/status_state.cpp shell/status_state.h
    shell/window_folder_picker.cpp shell/window_folder_picker.h)
list(APPEND ui_module_sources shell/shell_types.h)
list(APPEND ui_qml_files
    shell/Main.qml
    shell/SectionScreen.qml)
