list(APPEND ui_state_sources
    uninstaller/app_rows.cpp uninstaller/app_rows.h
    uninstaller/uninstaller_rules.cpp uninstaller/uninstaller_rules.h
    uninstaller/uninstaller_state.cpp uninstaller/uninstaller_state.h)
list(APPEND ui_module_sources uninstaller/uninstaller_types.h)
list(APPEND ui_qml_files uninstaller/AppRow.qml uninstaller/AppTable.qml
    uninstaller/AppUninstallerView.qml)
