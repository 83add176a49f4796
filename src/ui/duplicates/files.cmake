list(APPEND ui_state_sources
    duplicates/duplicate_layout.cpp duplicates/duplicate_layout.h
    duplicates/duplicate_rows.cpp duplicates/duplicate_rows.h
    duplicates/duplicates_rules.cpp duplicates/duplicates_rules.h
    duplicates/duplicates_state.cpp duplicates/duplicates_state.h)
list(APPEND ui_module_sources duplicates/duplicates_types.h)
list(APPEND ui_qml_files
    duplicates/DuplicateGroupCard.qml
    duplicates/DuplicateGroupList.qml
    duplicates/DuplicateRow.qml
    duplicates/DuplicatesAnalysisCard.qml
    duplicates/DuplicatesMergeCard.qml
    duplicates/DuplicatesView.qml)
