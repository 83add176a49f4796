#pragma once

#include "core/model/app_model.h"
#include "ui/cleaner/cleaner_state.h"
#include "ui/dashboard/dashboard_state.h"
#include "ui/duplicates/duplicates_state.h"
#include "ui/history/history_state.h"
#include "ui/largefiles/large_files_state.h"
#include "ui/performance/performance_state.h"
#include "ui/processes/processes_state.h"
#include "ui/safearea/safe_area_state.h"
#include "ui/security/security_state.h"
#include "ui/shell/onboarding_state.h"
#include "ui/shell/settings_state.h"
#include "ui/shell/shell_state.h"
#include "ui/shell/status_state.h"
#include "ui/shell/undo_state.h"
#include "ui/shell/work_state.h"
#include "ui/smartclean/smart_clean_state.h"
#include "ui/startup/startup_state.h"
#include "ui/storage/storage_state.h"
#include "ui/uninstaller/uninstaller_state.h"
#include "ui/widgets/disk_bar_state.h"
#include "ui/widgets/live_count.h"
#include "ui/widgets/memory_bar_state.h"
#include "ui/widgets/notice_state.h"
#include "ui/widgets/path_actions.h"
#include "ui/widgets/scan_panel_state.h"

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
    Q_PROPERTY(kestavon::NoticeState* notice READ notice CONSTANT)
    /// The offer to take the last move back.
    Q_PROPERTY(kestavon::NoticeState* undoOffer READ undoOffer CONSTANT)
    Q_PROPERTY(kestavon::WorkState* work READ work CONSTANT)
    Q_PROPERTY(kestavon::PathActions* pathActions READ pathActions CONSTANT)
    Q_PROPERTY(kestavon::ScanPanelState* scanPanel READ scanPanel CONSTANT)
    Q_PROPERTY(kestavon::DiskBarState* diskBar READ diskBar CONSTANT)
    Q_PROPERTY(kestavon::MemoryBarState* memoryBar READ memoryBar CONSTANT)
    Q_PROPERTY(kestavon::DashboardState* dashboard READ dashboard CONSTANT)
    Q_PROPERTY(kestavon::StorageState* storage READ storage CONSTANT)
    Q_PROPERTY(kestavon::LargeFilesState* largeFiles READ largeFiles CONSTANT)
    Q_PROPERTY(kestavon::DuplicatesState* duplicates READ duplicates CONSTANT)
    Q_PROPERTY(kestavon::SmartCleanState* smartClean READ smartClean CONSTANT)
    Q_PROPERTY(kestavon::CleanerState* cleaner READ cleaner CONSTANT)
    Q_PROPERTY(kestavon::UninstallerState* uninstaller READ uninstaller CONSTANT)
    Q_PROPERTY(kestavon::StartupState* startup READ startup CONSTANT)
    Q_PROPERTY(kestavon::SecurityState* security READ security CONSTANT)
    Q_PROPERTY(kestavon::PerformanceState* performance READ performance CONSTANT)
    Q_PROPERTY(kestavon::ProcessesState* processes READ processes CONSTANT)
    Q_PROPERTY(kestavon::SafeAreaState* safeArea READ safeArea CONSTANT)
    Q_PROPERTY(kestavon::HistoryState* history READ history CONSTANT)
public:
    /// `model` must outlive this.
    explicit UiStates(AppModel& model);

    ShellState* shell() { return &m_shell; }
    StatusState* status() { return &m_status; }
    OnboardingState* onboarding() { return &m_onboarding; }
    SettingsState* settings() { return &m_settings; }
    NoticeState* notice() { return &m_notice; }
    NoticeState* undoOffer() { return &m_undoOffer; }
    WorkState* work() { return &m_work; }
    PathActions* pathActions() { return &m_pathActions; }
    ScanPanelState* scanPanel() { return &m_scanPanel; }
    DiskBarState* diskBar() { return &m_diskBar; }
    MemoryBarState* memoryBar() { return &m_memoryBar; }
    DashboardState* dashboard() { return &m_dashboard; }
    StorageState* storage() { return &m_storage; }
    LargeFilesState* largeFiles() { return &m_largeFiles; }
    DuplicatesState* duplicates() { return &m_duplicates; }
    SmartCleanState* smartClean() { return &m_smartClean; }
    CleanerState* cleaner() { return &m_cleaner; }
    UninstallerState* uninstaller() { return &m_uninstaller; }
    StartupState* startup() { return &m_startup; }
    SecurityState* security() { return &m_security; }
    PerformanceState* performance() { return &m_performance; }
    ProcessesState* processes() { return &m_processes; }
    SafeAreaState* safeArea() { return &m_safeArea; }
    HistoryState* history() { return &m_history; }
    /// The live count that screens share.
    LiveCount& liveCount() { return m_liveCount; }

private:
    ShellState m_shell;
    StatusState m_status;
    OnboardingState m_onboarding;
    SettingsState m_settings;
    NoticeState m_notice{NoticeState::usualTime};
    NoticeState m_undoOffer{NoticeState::usualTime};
    UndoState m_undo;
    WorkState m_work;
    PathActions m_pathActions;
    LiveCount m_liveCount;
    ScanPanelState m_scanPanel;
    DiskBarState m_diskBar;
    MemoryBarState m_memoryBar;
    DashboardState m_dashboard;
    StorageState m_storage;
    LargeFilesState m_largeFiles;
    DuplicatesState m_duplicates;
    SmartCleanState m_smartClean;
    CleanerState m_cleaner;
    UninstallerState m_uninstaller;
    StartupState m_startup;
    SecurityState m_security;
    PerformanceState m_performance;
    ProcessesState m_processes;
    SafeAreaState m_safeArea;
    HistoryState m_history;
};

} // namespace kestavon
