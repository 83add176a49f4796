list(APPEND ui_state_sources
    widgets/file_name_text.cpp widgets/file_name_text.h
    widgets/record_table_model.cpp widgets/record_table_model.h)
