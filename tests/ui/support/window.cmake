find_package(Qt6 6.4 REQUIRED COMPONENTS Test)

# The real window over a machine that exists only in memory.
add_library(kestavon_test_window STATIC EXCLUDE_FROM_ALL ${CMAKE_CURRENT_LIST_DIR}/test_window.cpp)
target_include_directories(kestavon_test_window PUBLIC ${CMAKE_SOURCE_DIR}/tests)
target_link_libraries(kestavon_test_window
    PUBLIC kestavon_ui kestavon_uiplugin Qt6::Quick Qt6::Test
    PRIVATE kestavon_warnings)

# The same for tests that click it, with their main(); see window_test.h.
add_library(kestavon_window_test_support STATIC EXCLUDE_FROM_ALL
    ${CMAKE_CURRENT_LIST_DIR}/gui_main.cpp
    ${CMAKE_CURRENT_LIST_DIR}/window_test.cpp)
target_link_libraries(kestavon_window_test_support
    PUBLIC kestavon_test_window GTest::gmock
    PRIVATE kestavon_warnings)
