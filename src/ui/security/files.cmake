list(APPEND ui_state_sources
    security/security_rules.cpp security/security_rules.h
    security/security_state.cpp security/security_state.h)
list(APPEND ui_module_sources security/security_types.h)
list(APPEND ui_qml_files security/FindingRow.qml security/SecurityView.qml)
