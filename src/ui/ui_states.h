#pragma once

#include "core/model/app_model.h"
#include "ui/shell/onboarding_state.h"
#include "ui/shell/settings_state.h"
#include "ui/shell/shell_state.h"
#include "ui/shell/status_state.h"

#include <QObject>

namespace kestavon {

/// What every part of the window shows, made over one model: the one object that the window is
/// given. Each screen takes its own part. Main thread.
class UiStates final : public QObject {
    Q_OBJECT
    Q_PROPERTY(kestavon::ShellState* shell READ shell CONSTANT)
    Q_PROPERTY(kestavon::StatusState* status READ status CONSTANT)
    Q_PROPERTY(kestavon::OnboardingState* onboarding READ onboarding CONSTANT)
    Q_PROPERTY(kestavon::SettingsState* settings READ settings CONSTANT)
public:
    /// `model` must outlive this.
    explicit UiStates(AppModel& model);

    ShellState* shell() { return &m_shell; }
    StatusState* status() { return &m_status; }
    OnboardingState* onboarding() { return &m_onboarding; }
    SettingsState* settings() { return &m_settings; }

private:
    ShellState m_shell;
    StatusState m_status;
    OnboardingState m_onboarding;
    SettingsState m_settings;
};

} // namespace kestavon
