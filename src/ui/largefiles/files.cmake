list(APPEND ui_state_sources largefiles/large_files_state.cpp largefiles/large_files_state.h)
list(APPEND ui_module_sources largefiles/large_files_types.h)
list(APPEND ui_qml_files largefiles/LargeFilesView.qml)
