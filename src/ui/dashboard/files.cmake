list(APPEND ui_state_sources
    dashboard/dashboard_rules.cpp dashboard/dashboard_rules.h
    dashboard/dashboard_state.cpp dashboard/dashboard_state.h)
list(APPEND ui_module_sources dashboard/dashboard_types.h)
list(APPEND ui_qml_files dashboard/DashboardView.qml)
