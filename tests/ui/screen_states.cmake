kestavon_test(screen_state_tests
    SOURCES
        support/qt_main.cpp
        ui/cleaner/cleaner_rules_test.cpp
        ui/dashboard/dashboard_test.cpp
        ui/duplicates/duplicates_rules_test.cpp
        ui/performance/performance_rules_test.cpp
        ui/processes/processes_rules_test.cpp
        ui/safearea/safe_area_rules_test.cpp
        ui/security/security_rules_test.cpp
        ui/shell/undo_state_test.cpp
        ui/shell/work_state_test.cpp
        ui/smartclean/preview_rules_test.cpp
        ui/smartclean/smart_clean_rules_test.cpp
        ui/startup/startup_rows_test.cpp
        ui/storage/file_table_test.cpp
        ui/storage/record_removal_test.cpp
        ui/uninstaller/uninstaller_rules_test.cpp
        ui/widgets/disk_bar_test.cpp
        ui/widgets/notice_state_test.cpp
        ui/widgets/scan_panel_test.cpp
        ui/widgets/widget_rules_test.cpp
    LINKS kestavon_ui_state)
# Expected texts stand in the tests as plain literals.
target_compile_options(screen_state_tests PRIVATE -UQT_NO_CAST_FROM_ASCII)
