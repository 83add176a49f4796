list(APPEND ui_module_sources style/desktop_appearance.cpp style/desktop_appearance.h
    style/desktop_motion.cpp style/desktop_motion.h
    style/symbol_provider.cpp style/symbol_provider.h)
list(APPEND ui_qml_singletons style/Theme.qml)
list(APPEND ui_qml_files
    style/AlertDialog.qml
    style/AppButton.qml
    style/AppCheckBox.qml
    style/AppDialog.qml
    style/AppPicker.qml
    style/AppScrollBar.qml
    style/AppText.qml
    style/AppTextField.qml
    style/AppToolTip.qml
    style/Card.qml
    style/ConfirmDialog.qml
    style/ElidedText.qml
    style/EmptyState.qml
    style/FocusRing.qml
    style/Hairline.qml
    style/HoverFill.qml
    style/PageFlickable.qml
    style/Popover.qml
    style/Sheet.qml
    style/SpokenText.qml
    style/Spinner.qml
    style/SteppedClock.qml
    style/SymbolIcon.qml
    style/SymbolTile.qml
    style/Theme.qml)
