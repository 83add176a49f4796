kestavon_test(ui_shell_test
    SOURCES ui/shell/folder_chooser_test.cpp ui/shell/onboarding_state_test.cpp
        ui/shell/shell_rules_test.cpp ui/shell/sidebar_model_test.cpp
        ui/shell/single_instance_test.cpp ui/shell/status_menu_test.cpp ui/shell/window_folder_picker_test.cpp
        support/qt_main.cpp
    LINKS kestavon_ui_state Qt6::Network)

kestavon_test(ui_shell_window_test
    SOURCES ui/shell/shell_window_test.cpp
    LINKS kestavon_window_test_support)
