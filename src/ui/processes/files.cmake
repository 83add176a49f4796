list(APPEND ui_state_sources
    processes/processes_rules.cpp processes/processes_rules.h
    processes/processes_state.cpp processes/processes_state.h)
list(APPEND ui_module_sources processes/processes_types.h)
list(APPEND ui_qml_files processes/ProcessRow.qml processes/ProcessesView.qml)
