list(APPEND ui_state_sources storage/storage_state.cpp storage/storage_state.h)
list(APPEND ui_module_sources storage/storage_types.h)
list(APPEND ui_qml_files storage/StorageView.qml)
