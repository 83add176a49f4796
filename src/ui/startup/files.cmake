list(APPEND ui_state_sources
    startup/startup_rows.cpp startup/startup_rows.h
    startup/startup_state.cpp startup/startup_state.h)
list(APPEND ui_module_sources startup/startup_types.h)
list(APPEND ui_qml_files startup/StartupRow.qml startup/StartupView.qml)
