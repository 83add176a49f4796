list(APPEND ui_state_sources
    safearea/held_items.cpp safearea/held_items.h
    safearea/safe_area_rules.cpp safearea/safe_area_rules.h
    safearea/safe_area_state.cpp safearea/safe_area_state.h)
list(APPEND ui_module_sources safearea/safe_area_types.h)
list(APPEND ui_qml_files safearea/EarlierItems.qml safearea/HeldItemList.qml safearea/HeldItemRow.qml
    safearea/QuarantineView.qml)
