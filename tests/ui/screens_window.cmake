kestavon_test(screen_window_tests
    SOURCES
        ui/cleaner/cleaner_window_test.cpp
        ui/dashboard/dashboard_window_test.cpp
        ui/duplicates/duplicates_window_test.cpp
        ui/history/history_window_test.cpp
        ui/performance/performance_window_test.cpp
        ui/widgets/app_icon_provider_test.cpp
        ui/processes/processes_window_test.cpp
        ui/safearea/safe_area_window_test.cpp
        ui/security/security_window_test.cpp
        ui/shell/accessibility_window_test.cpp
        ui/shell/desktop_appearance_test.cpp
        ui/shell/work_window_test.cpp
        ui/smartclean/smart_clean_window_test.cpp
        ui/startup/startup_window_test.cpp
        ui/storage/file_table_window_test.cpp
        ui/storage/removal_window_test.cpp
        ui/uninstaller/uninstaller_window_test.cpp
        ui/widgets/path_menu_window_test.cpp
    LINKS kestavon_window_test_support Qt6::GuiPrivate)
# Expected texts stand in the tests as plain literals.
target_compile_options(screen_window_tests PRIVATE -UQT_NO_CAST_FROM_ASCII)

add_executable(kestavon_shots EXCLUDE_FROM_ALL
    ${CMAKE_SOURCE_DIR}/tests/shots/main.cpp
    ${CMAKE_SOURCE_DIR}/tests/shots/shot_data.cpp)
set_target_properties(kestavon_shots PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
target_link_libraries(kestavon_shots PRIVATE kestavon_test_window Qt6::Widgets kestavon_warnings)
qt_add_resources(kestavon_shots shots PREFIX /shots BASE ${CMAKE_SOURCE_DIR}/tests/shots
    FILES ${CMAKE_SOURCE_DIR}/tests/shots/Components.qml)
