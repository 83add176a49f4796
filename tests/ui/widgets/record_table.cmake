kestavon_test(record_table_test
    SOURCES support/qt_main.cpp ui/widgets/record_table_model_test.cpp
    LINKS kestavon_ui_state)
