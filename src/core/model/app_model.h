#pragma once

#include "concurrency/serial_queue.h"
#include "core/domain/activity_event.h"
#include "core/domain/app_section.h"
#include "core/domain/candidate_list.h"
#include "core/domain/duplicate_group.h"
#include "core/domain/installed_app.h"
#include "core/domain/junk_group.h"
#include "core/domain/quarantine_item.h"
#include "core/domain/record_list.h"
#include "core/domain/scan_phase.h"
#include "core/domain/security_finding.h"
#include "core/domain/startup_item.h"
#include "core/domain/system_state.h"
#include "core/model/updater_controller.h"
#include "platform/folder_picker.h"
#include "platform/platform.h"
#include "storage/file_scanning.h"

#include <QObject>

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// Everything the screens show, and every operation behind their controls.
///
/// Confined to the main thread; every operation returns at once. Long work runs off the main thread
/// on captured values, and its result is dropped when a newer run has replaced it or the model is
/// gone. The model shows no dialogs: confirming is the screen's part, the deed is the model's.
class AppModel final : public QObject {
    Q_OBJECT
public:
    /// The published fields.
    enum class Field {
        section,
        scanPhase,
        records,
        duplicates,
        cleanupCandidates,
        selectedCleanupIDs,
        findings,
        quarantine,
        history,
        memory,
        processes,
        selectedRoot,
        diskTotal,
        diskFree,
        junkGroups,
        hasFullDiskAccess,
        liveFileCount,
        duplicatePhase,
        securityPhase,
        installedApps,
        isLoadingApps,
        startupItems,
        isFreezingRAM,
        ramFreedBytes,
        scanNotice,
    };

    /// Reads the disk totals and probes for access once; nothing is loaded from disk.
    AppModel(std::shared_ptr<FileScanning> scanner, Platform platform);
    ~AppModel() override;

    /// @name Published fields
    /// Each announces itself before it changes and after; during the first announcement it still
    /// has its old value.
    /// @{
    AppSection section() const { return m_section; }
    const ScanPhase& scanPhase() const { return m_scanPhase; }
    /// Every item of the last storage scan, depth first; never null.
    const std::shared_ptr<const RecordList>& records() const { return m_records; }
    const std::vector<DuplicateGroup>& duplicates() const { return m_duplicates; }
    /// Cleanup suggestions made from `records`, in their order; never null.
    const std::shared_ptr<const CandidateList>& cleanupCandidates() const
    {
        return m_cleanupCandidates;
    }
    const CandidateSelection& selectedCleanupIDs() const { return m_selectedCleanupIDs; }
    const std::vector<SecurityFinding>& findings() const { return m_findings; }
    const std::vector<QuarantineItem>& quarantine() const { return m_quarantine; }
    /// Newest first.
    const std::vector<ActivityEvent>& history() const { return m_history; }
    const std::optional<MemorySnapshot>& memory() const { return m_memory; }
    const std::vector<AppProcessInfo>& processes() const { return m_processes; }
    /// The folder that the storage scan walks.
    const std::string& selectedRoot() const { return m_selectedRoot; }
    /// Bytes of the volume that holds `selectedRoot`.
    std::int64_t diskTotal() const { return m_diskTotal; }
    std::int64_t diskFree() const { return m_diskFree; }
    /// One group per category, in the categories' order.
    const std::vector<JunkGroup>& junkGroups() const { return m_junkGroups; }
    bool hasFullDiskAccess() const { return m_hasFullDiskAccess; }
    /// Records the running scan has made so far, or the last one made.
    std::int64_t liveFileCount() const { return m_liveFileCount; }
    const ScanPhase& duplicatePhase() const { return m_duplicatePhase; }
    const ScanPhase& securityPhase() const { return m_securityPhase; }
    const std::vector<InstalledApp>& installedApps() const { return m_installedApps; }
    bool isLoadingApps() const { return m_isLoadingApps; }
    const std::vector<StartupItem>& startupItems() const { return m_startupItems; }
    bool isFreezingRAM() const { return m_isFreezingRAM; }
    std::int64_t ramFreedBytes() const { return m_ramFreedBytes; }
    /// What a person should know about the last scan: a root that could not be opened, folders that
    /// could not be read. One or two sentences; empty when there is nothing to tell.
    const std::string& scanNotice() const { return m_scanNotice; }
    /// @}

    /// Whether the last finished scan could open its root; true before the first.
    bool scanRootWasOpened() const { return m_scanRootWasOpened; }

    /// Number, bytes and hidden bytes of `records`.
    StorageSummary storageSummary() const { return m_records->summary(); }

    const Platform& platform() const { return m_platform; }
    const UpdaterController& updaterController() const { return m_updaterController; }

    void setSection(AppSection section);

    /// @name Storage scan
    /// @{
    /// Reads the totals of the volume that holds `selectedRoot`; keeps the old ones when that
    /// fails.
    void refreshDiskSpace();
    /// Lets the user pick a folder with `picker`, makes it `selectedRoot` and refreshes the disk
    /// totals. The scan is not started.
    void chooseScanFolder(FolderPicker& picker);
    /// Makes `folder` (an absolute path) the root of the next scan and refreshes the disk totals.
    void setSelectedRoot(const std::string& folder);
    /// Scans `selectedRoot`; a running scan is cancelled first, and so is a duplicate analysis.
    void startStorageScan();
    /// Cancels the running scan: the phase is idle at once, and what was found is dropped.
    void stopStorageScan();
    /// @}

    /// Takes a fresh memory snapshot; none when the system does not tell.
    void refreshMemory();

    /// @name Access to protected folders
    /// @{
    /// Probes again. At most a dozen folders are looked at.
    void refreshFullDiskAccess();
    /// Opens the system's privacy settings where there are any; nothing is reported.
    void openFullDiskAccessSettings();
    /// @}

Q_SIGNALS:
    /// The field is about to change and still has its old value. A view marks itself dirty here, if
    /// anywhere: reading the field now shows stale data.
    void fieldWillChange(kestavon::AppModel::Field field);
    /// The field has its new value.
    void fieldChanged(kestavon::AppModel::Field field);

private:
    struct ScanResult;

    /// Announces, assigns and announces again: the only way a field changes. Returns the old value.
    template <class T> T publish(Field field, T& slot, T value)
    {
        Q_EMIT fieldWillChange(field);
        std::swap(slot, value);
        Q_EMIT fieldChanged(field);
        return value;
    }

    void finishStorageScan(ScanResult result);
    template <class T> void disposeInBackground(T value);
    void recordEvent(std::string title, std::string detail);
    bool probeFullDiskAccess() const;

    // Fixed at construction.
    std::shared_ptr<FileScanning> m_scanner;
    Platform m_platform;
    UpdaterController m_updaterController;

    // Published fields; main thread only.
    AppSection m_section = AppSection::dashboard;
    ScanPhase m_scanPhase;
    std::shared_ptr<const RecordList> m_records = std::make_shared<const RecordList>();
    std::vector<DuplicateGroup> m_duplicates;
    std::shared_ptr<const CandidateList> m_cleanupCandidates
        = std::make_shared<const CandidateList>();
    CandidateSelection m_selectedCleanupIDs;
    std::vector<SecurityFinding> m_findings;
    std::vector<QuarantineItem> m_quarantine;
    std::vector<ActivityEvent> m_history;
    std::optional<MemorySnapshot> m_memory;
    std::vector<AppProcessInfo> m_processes;
    std::string m_selectedRoot;
    std::int64_t m_diskTotal = 0;
    std::int64_t m_diskFree = 0;
    std::vector<JunkGroup> m_junkGroups;
    bool m_hasFullDiskAccess = false;
    std::int64_t m_liveFileCount = 0;
    ScanPhase m_duplicatePhase;
    ScanPhase m_securityPhase;
    std::vector<InstalledApp> m_installedApps;
    bool m_isLoadingApps = false;
    std::vector<StartupItem> m_startupItems;
    bool m_isFreezingRAM = false;
    std::int64_t m_ramFreedBytes = 0;
    std::string m_scanNotice;
    bool m_scanRootWasOpened = true;

    // Main thread only. Only the scan with the current run number may still change anything.
    std::optional<std::stop_source> m_scanTask;
    std::uint64_t m_scanRun = 0;

    SerialQueue m_scanQueue; // the scanner's own thread
    SerialQueue m_disposalQueue; // frees what takes long to free
};

} // namespace kestavon
