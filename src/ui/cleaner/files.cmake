list(APPEND ui_state_sources
    cleaner/cleaner_rules.cpp cleaner/cleaner_rules.h
    cleaner/cleaner_state.cpp cleaner/cleaner_state.h)
list(APPEND ui_module_sources cleaner/cleaner_types.h)
list(APPEND ui_qml_files cleaner/CleanerRow.qml cleaner/CleanerView.qml)
