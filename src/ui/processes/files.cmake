list(APPEND ui_state_sources
    processes/processes_rules.cpp processes/processes_rules.h
    processes/processes_state.cpp processes/processes_state.h)
list(APPEND ui_module_sources
    processes/app_icon_provider.cpp processes/app_icon_provider.h
    processes/processes_types.h)
list(APPEND ui_qml_files processes/AppIcon.qml processes/ProcessRow.qml processes/ProcessesView.qml)
