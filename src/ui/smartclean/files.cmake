list(APPEND ui_state_sources
    smartclean/duplicates_card_state.cpp smartclean/duplicates_card_state.h
    smartclean/junk_card.h
    smartclean/preview_rules.cpp smartclean/preview_rules.h
    smartclean/preview_state.cpp smartclean/preview_state.h
    smartclean/smart_clean_rules.cpp smartclean/smart_clean_rules.h
    smartclean/smart_clean_state.cpp smartclean/smart_clean_state.h)
list(APPEND ui_module_sources smartclean/smartclean_types.h)
list(APPEND ui_qml_files
    smartclean/CleanupPreviewSheet.qml
    smartclean/JunkCategoryCard.qml
    smartclean/PreviewRow.qml
    smartclean/SmartCleanDuplicatesCard.qml
    smartclean/SmartCleanSummaryBar.qml
    smartclean/SmartCleanView.qml)
