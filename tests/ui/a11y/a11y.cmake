# The real window, driven through the accessibility bus in an X server of its own.
if(TARGET kestavon)
    add_test(NAME a11y COMMAND ${CMAKE_CURRENT_LIST_DIR}/run $<TARGET_FILE:kestavon_program>)
    set_tests_properties(a11y PROPERTIES LABELS a11y SKIP_RETURN_CODE 77 TIMEOUT 300)
endif()
