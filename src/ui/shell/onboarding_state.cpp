#include "ui/shell/onboarding_state.h"

#include "ui/shell/shell_rules.h"

namespace kestavon {

namespace {

constexpr auto shownKey = "kv.fda.onboardingShown";

} // namespace

OnboardingState::OnboardingState(AppModel& model, std::chrono::milliseconds pause)
    : m_model(model)
{
    m_watcher.setInterval(pause);
    m_watcher.setSingleShot(true);
    connect(&m_watcher, &QTimer::timeout, this, [this] {
        m_model.refreshFullDiskAccess();
        watch();
    });
}

void OnboardingState::windowAppeared()
{
    const bool wasShown = m_model.platform().settings->flag(shownKey);
    if (m_isPresented || !offersOnboarding(m_model.hasFullDiskAccess(), wasShown))
        return;
    rememberShown();
    present(true);
    watch();
}

void OnboardingState::skip()
{
    rememberShown();
    present(false);
}

void OnboardingState::openSystemSettings()
{
    m_model.openFullDiskAccessSettings();
}

void OnboardingState::dismiss()
{
    present(false);
}

void OnboardingState::watch()
{
    if (!m_model.hasFullDiskAccess()) {
        m_watcher.start();
        return;
    }
    rememberShown();
    present(false);
}

void OnboardingState::rememberShown()
{
    m_model.platform().settings->setFlag(shownKey, true);
}

void OnboardingState::present(bool isPresented)
{
    if (!isPresented)
        m_watcher.stop();
    if (m_isPresented == isPresented)
        return;
    m_isPresented = isPresented;
    Q_EMIT isPresentedChanged();
}

} // namespace kestavon
