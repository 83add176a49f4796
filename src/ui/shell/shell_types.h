#pragma once

#include "ui/shell/folder_chooser.h"
#include "ui/shell/onboarding_state.h"
#include "ui/shell/settings_state.h"
#include "ui/shell/shell_state.h"
#include "ui/shell/sidebar_model.h"
#include "ui/shell/status_state.h"
#include "ui/shell/window_folder_picker.h"
#include "ui/shell/work_state.h"

#include <QtQml/qqml.h>

namespace kestavon {

struct SidebarModelType {
    Q_GADGET
    QML_FOREIGN(kestavon::SidebarModel)
    QML_NAMED_ELEMENT(SidebarModel)
    QML_UNCREATABLE("made by C++")
};

struct WindowFolderPickerType {
    Q_GADGET
    QML_FOREIGN(kestavon::WindowFolderPicker)
    QML_NAMED_ELEMENT(WindowFolderPicker)
    QML_UNCREATABLE("made by C++")
};

struct FolderChooserType {
    Q_GADGET
    QML_FOREIGN(kestavon::FolderChooser)
    QML_NAMED_ELEMENT(FolderChooser)
    QML_UNCREATABLE("made by C++")
};

struct ShellStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::ShellState)
    QML_NAMED_ELEMENT(ShellState)
    QML_UNCREATABLE("made by C++")
};

struct StatusStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::StatusState)
    QML_NAMED_ELEMENT(StatusState)
    QML_UNCREATABLE("made by C++")
};

struct OnboardingStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::OnboardingState)
    QML_NAMED_ELEMENT(OnboardingState)
    QML_UNCREATABLE("made by C++")
};

struct SettingsStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::SettingsState)
    QML_NAMED_ELEMENT(SettingsState)
    QML_UNCREATABLE("made by C++")
};

struct WorkStateType {
    Q_GADGET
    QML_FOREIGN(kestavon::WorkState)
    QML_NAMED_ELEMENT(WorkState)
    QML_UNCREATABLE("made by C++")
};

} // namespace kestavon
