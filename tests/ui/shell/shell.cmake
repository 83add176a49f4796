kestavon_test(ui_shell_test
    SOURCES ui/shell/command_line_test.cpp ui/shell/onboarding_state_test.cpp
        ui/shell/shell_rules_test.cpp ui/shell/sidebar_model_test.cpp
        ui/shell/single_instance_test.cpp ui/shell/window_folder_picker_test.cpp
        support/qt_main.cpp
    LINKS kestavon_ui_state Qt6::Network)

find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
# The real window over a machine that exists only in memory, clicked; see window_test.h.
add_library(kestavon_window_test_support STATIC
    ${CMAKE_CURRENT_LIST_DIR}/../support/gui_main.cpp
    ${CMAKE_CURRENT_LIST_DIR}/../support/window_test.cpp)
target_include_directories(kestavon_window_test_support PUBLIC ${CMAKE_SOURCE_DIR}/tests)
target_link_libraries(kestavon_window_test_support
    PUBLIC kestavon_ui kestavon_uiplugin Qt6::Quick Qt6::Test GTest::gmock
    PRIVATE kestavon_warnings)

kestavon_test(ui_shell_window_test
    SOURCES ui/shell/shell_window_test.cpp
    LINKS kestavon_window_test_support)
