list(APPEND ui_state_sources
    widgets/activity_list_model.cpp widgets/activity_list_model.h
    widgets/confirmation.cpp widgets/confirmation.h
    widgets/disk_bar_rules.cpp widgets/disk_bar_rules.h
    widgets/disk_bar_state.cpp widgets/disk_bar_state.h
    widgets/display_text.h
    widgets/file_table_state.cpp widgets/file_table_state.h
    widgets/file_path.h
    widgets/live_count.cpp widgets/live_count.h
    widgets/memory_bar_rules.cpp widgets/memory_bar_rules.h
    widgets/memory_bar_state.cpp widgets/memory_bar_state.h
    widgets/notice_state.cpp widgets/notice_state.h
    widgets/path_actions.cpp widgets/path_actions.h
    widgets/record_removal.cpp widgets/record_removal.h
    widgets/scan_panel_rules.cpp widgets/scan_panel_rules.h
    widgets/scan_panel_state.cpp widgets/scan_panel_state.h
    widgets/threat_badge_rules.cpp widgets/threat_badge_rules.h)
list(APPEND ui_module_sources
    widgets/app_icon_provider.cpp widgets/app_icon_provider.h
    widgets/widgets_types.h)
list(APPEND ui_qml_files
    widgets/ActivityRow.qml
    widgets/AppIcon.qml
    widgets/ConfirmationDialogs.qml
    widgets/FileActionBar.qml
    widgets/FileTablePage.qml
    widgets/FootBar.qml
    widgets/LegendDot.qml
    widgets/MemoryBar.qml
    widgets/MetricCard.qml
    widgets/NeedsScanView.qml
    widgets/NoticeBar.qml
    widgets/PageHeader.qml
    widgets/PathMenu.qml
    widgets/PathMenuArea.qml
    widgets/PulsingDot.qml
    widgets/RemovalDialogs.qml
    widgets/ScanLivePanel.qml
    widgets/ScanNotice.qml
    widgets/ShadedBar.qml
    widgets/SlotModel.qml
    widgets/StorageBar.qml
    widgets/TableColumn.qml
    widgets/ThreatBadge.qml
    widgets/TickRow.qml
    widgets/VirtualList.qml
    widgets/VirtualListRow.qml
    widgets/VirtualTable.qml
    widgets/VirtualTableRow.qml)
include(widgets/record_table.cmake)
