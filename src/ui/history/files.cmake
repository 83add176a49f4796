list(APPEND ui_state_sources history/history_state.cpp history/history_state.h)
list(APPEND ui_module_sources history/history_types.h)
list(APPEND ui_qml_files history/HistoryView.qml)
