#include "ui/ui_states.h"

namespace kestavon {

UiStates::UiStates(AppModel& model)
    : m_shell(model)
    , m_status(model)
    , m_onboarding(model)
    , m_settings(model)
    , m_undo(model, m_undoOffer, m_notice)
    , m_work(model, m_notice)
    , m_pathActions(model)
    , m_liveCount(model)
    , m_scanPanel(model, m_liveCount)
    , m_diskBar(model)
    , m_memoryBar(model)
    , m_dashboard(model, m_liveCount)
    , m_storage(model)
    , m_largeFiles(model)
    , m_duplicates(model)
    , m_smartClean(model, m_duplicates)
    , m_cleaner(model)
    , m_uninstaller(model)
    , m_startup(model)
    , m_security(model)
    , m_performance(model)
    , m_processes(model)
    , m_safeArea(model, *m_shell.folderPicker())
    , m_history(model)
{
    connect(&m_pathActions, &PathActions::failed, &m_shell, &ShellState::failed);
}

} // namespace kestavon
