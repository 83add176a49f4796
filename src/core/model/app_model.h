#pragma once

#include "concurrency/serial_queue.h"
#include "core/domain/action_kind.h"
#include "core/domain/activity_event.h"
#include "core/domain/app_section.h"
#include "core/domain/candidate_list.h"
#include "core/domain/duplicate_list.h"
#include "core/domain/file_work.h"
#include "core/domain/installed_app.h"
#include "core/domain/junk_group.h"
#include "core/domain/quarantine_item.h"
#include "core/domain/record_list.h"
#include "core/domain/record_pick.h"
#include "core/domain/scan_phase.h"
#include "core/domain/security_finding.h"
#include "core/domain/startup_item.h"
#include "core/domain/system_state.h"
#include "core/domain/undo.h"
#include "core/model/impatient_asker.h"
#include "core/model/removal_worker.h"
#include "core/model/updater_controller.h"
#include "core/model/work_board.h"
#include "duplicates/duplicate_finder.h"
#include "platform/folder_picker.h"
#include "platform/platform.h"
#include "safearea/quarantine_store.h"
#include "smartclean/smart_scanner.h"
#include "storage/file_scanning.h"
#include "system/system_monitor.h"

#include <QObject>

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace kestavon {

class AppUninstaller;
class SecurityScanner;

/// What was read from the machine, and how many readings had begun with it.
template <class Value> struct Numbered {
    std::uint64_t number = 0;
    Value value;
};

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
        earlierQuarantine,
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
        duplicateProgress,
        securityPhase,
        installedApps,
        isLoadingApps,
        startupItems,
        isLoadingStartupItems,
        isFreezingRAM,
        ramFreedBytes,
        scanNotice,
        undoOffer,
        busyHeldItems,
        fileWork,
        partlyDeleted,
    };

    /// As `findDuplicates`.
    using DuplicateFinder = std::function<std::shared_ptr<const DuplicateList>(
        std::shared_ptr<const RecordList>, const DuplicateSearchOptions&, const std::stop_token&)>;

    /// As `SmartScanner::scanCategory`; one call at a time.
    using JunkScanner = std::function<std::vector<CleanupCandidate>(
        JunkCategory category, const std::stop_token& stop)>;

    /// Reads memory and the disk totals and probes for access once, and ends in the background what
    /// a crash left unfinished in the Safe Area and the Trash; nothing is loaded from disk. Where
    /// no junk scanner is given, it makes the one for the platform.
    AppModel(std::shared_ptr<FileScanning> scanner, Platform platform,
        DuplicateFinder duplicateFinder = findDuplicates, JunkScanner junkScanner = {});
    ~AppModel() override;

    /// @name Published fields
    /// Each announces itself before it changes and after; during the first announcement it still
    /// has its old value.
    /// @{
    AppSection section() const { return m_section; }
    const ScanPhase& scanPhase() const { return m_scanPhase; }
    /// Every item of the last storage scan, depth first; never null.
    const std::shared_ptr<const RecordList>& records() const { return m_records; }
    /// What the last duplicate analysis found; never null. It keeps the records it was made from,
    /// also those that were removed since.
    const std::shared_ptr<const DuplicateList>& duplicates() const { return m_duplicates; }
    /// Cleanup suggestions made from `records`, in their order; never null.
    const std::shared_ptr<const CandidateList>& cleanupCandidates() const
    {
        return m_cleanupCandidates;
    }
    const CandidateSelection& selectedCleanupIDs() const { return m_selectedCleanupIDs; }
    const std::vector<SecurityFinding>& findings() const { return m_findings; }
    const std::vector<QuarantineItem>& quarantine() const { return m_quarantine; }
    /// What else lies in the holding folder, as of the last `findEarlierHeldItems`: the items of
    /// earlier runs, the oldest first. The original path is empty where it is not known, and the
    /// date zero.
    const std::vector<QuarantineItem>& earlierQuarantine() const { return m_earlierQuarantine; }
    /// Whether a held item is being restored or deleted, or is about to be.
    bool isHeldItemBusy(const Uuid& id) const { return m_busyHeldItems.contains(id); }
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
    /// How far the running analysis has come; no bytes at all until it knows.
    const DuplicateProgress& duplicateProgress() const { return m_duplicateProgress; }
    const ScanPhase& securityPhase() const { return m_securityPhase; }
    const std::vector<InstalledApp>& installedApps() const { return m_installedApps; }
    bool isLoadingApps() const { return m_isLoadingApps; }
    const std::vector<StartupItem>& startupItems() const { return m_startupItems; }
    bool isLoadingStartupItems() const { return m_isLoadingStartupItems; }
    bool isFreezingRAM() const { return m_isFreezingRAM; }
    std::int64_t ramFreedBytes() const { return m_ramFreedBytes; }
    /// What a person should know about the last scan: a root that could not be opened, folders that
    /// could not be read. One or two sentences; empty when there is nothing to tell.
    const std::string& scanNotice() const { return m_scanNotice; }
    /// The last move to the Trash or the Safe Area, until it is taken back or withdrawn, or
    /// something else is removed.
    const std::optional<UndoOffer>& undoOffer() const { return m_undoOffer; }
    /// The moving, restoring or deleting that has been going on for half a second or longer; of
    /// several, the one that was asked for first.
    const std::optional<FileWork>& fileWork() const { return m_fileWork; }
    /// What the last deletion that was stopped in the middle of a folder left of that; nothing as
    /// long as there was none.
    const std::optional<PartlyDeleted>& partlyDeleted() const { return m_partlyDeleted; }
    /// @}

    /// Whether the last finished scan could open its root; true before the first.
    bool scanRootWasOpened() const { return m_scanRootWasOpened; }

    /// Bytes, at most the largest 64-bit number, and number of the items of all `junkGroups`.
    std::int64_t totalJunkBytes() const;
    std::size_t totalJunkItemCount() const;

    /// Number, bytes and hidden bytes of `records`.
    StorageSummary storageSummary() const { return m_records->summary(); }

    const Platform& platform() const { return m_platform; }
    const UpdaterController& updaterController() const { return m_updaterController; }

    void setSection(AppSection section);

    /// How an operation on files ended, in words for a person: empty when it was done.
    using Finished = std::function<void(const std::string& error)>;

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

    /// @name Duplicates
    /// @{
    /// Looks for files with the same content among `records`; a running analysis is cancelled
    /// first. What lies in the Trash or the Safe Area does not count.
    void startDuplicateAnalysis();
    /// Cancels the running analysis: the phase is idle at once, and what was found is dropped.
    void stopDuplicateAnalysis();
    /// Keeps the newest file of each group and removes the others: to the Trash, or for good.
    /// Nothing goes whose group's kept file is not there any more, with the same content; for good
    /// only what was compared with it once more. Then `duplicates` is empty and the phase idle.
    void mergeDuplicates(bool toTrash, Finished finished = {});
    /// @}

    /// @name Smart Clean
    /// @{
    /// Looks for junk of every category, in groups with new ids that fill one after the other; a
    /// running scan of all is cancelled first, and changes no group any more.
    void scanAllJunk();
    /// Looks for junk of one category anew. Its group keeps its id.
    void scanJunkCategory(JunkCategory category);
    /// Cancels the running scan of all categories: no group is being scanned any more. What was
    /// found by then still arrives, group by group.
    void stopJunkScan();
    /// Moves every item of every group to the Safe Area; an error means that it could not be opened
    /// and nothing changed. What cannot be moved leaves its group all the same.
    void cleanAllJunk(Finished finished = {});
    /// @}

    /// @name Security review
    /// @{
    /// Looks among `records` for what makes software start by itself. It cannot be stopped; of
    /// several, the one that ends last decides what `findings` holds.
    void startSecurityScan();
    /// Moves the finding's file to the Trash; an error says why it stays, and nothing changes. A
    /// folder in its place stays, and links above it, below the root of what was reviewed, are not
    /// followed.
    /// What the machine needs is protected, but not by its name as other items are.
    void removeFinding(const SecurityFinding& finding, Finished finished = {});
    /// @}

    /// @name Applications and what starts by itself
    /// What goes here goes to the Trash, protected by the machine only: an application may well lie
    /// where nothing else may be removed.
    /// @{
    /// Lists the installed applications anew, with what they have left in the home; the list is
    /// empty until then. It waits for applications that are being removed.
    void loadInstalledApps();
    /// Moves the application and then, unless `appOnly`, its leftovers in order. What cannot be
    /// moved stays at its place without a word, and leaves the list all the same; a folder that has
    /// taken the place of a file cannot. When it is stopped, leftovers whose turn did not come stay
    /// listed. An application that cannot be moved
    /// stays listed; its leftovers go as `removeLeftovers` does, and `appOnly` does nothing.
    void uninstallApp(InstalledApp app, bool appOnly, Finished finished = {});
    /// Moves the application's leftovers; the application stays listed, without those that had
    /// their turn.
    void removeLeftovers(InstalledApp app, Finished finished = {});
    /// Lists anew what starts by itself; the old list stays until then.
    void loadStartupItems();
    /// Moves the file that defines the item, and no folder in its place; an error says why it
    /// stays, and nothing changes. Nothing happens to one of the system's.
    void removeStartupItem(const StartupItem& item, Finished finished = {});
    /// @}

    /// @name Memory and processes
    /// Read off the main thread. What is being read already is not read once more, and a reading
    /// that comes late never replaces one that began after it.
    /// @{
    /// Takes a fresh memory snapshot; none when the system does not tell.
    void refreshMemory();
    /// Lists the running applications anew.
    void refreshProcesses();
    /// Asks a listed application to quit. False when it could not be told. At once; the list stays
    /// as it is.
    bool quitProcess(const AppProcessInfo& process);
    /// Makes the system reclaim memory: about a second off the main thread, then `memory` and
    /// `processes` are new, `ramFreedBytes` tells what it brought, and the history too. Nothing
    /// while that is under way.
    void optimizeMemory();
    /// @}

    /// @name Removing and restoring
    /// Nothing here asks: the screens do, before. The files are worked on off the main thread; the
    /// fields change when that is over, and then `finished` is called, if there is one. Protected
    /// items are skipped without a word. Operations that are started one after the other all
    /// complete, each with its own selection.
    ///
    /// One that is stopped ends as if it had been asked for what was done by then; what was not
    /// stays listed, and selected where that can be seen, and there is no error. Only the groups of
    /// duplicates are gone all the same: they have to be found anew.
    /// @{
    /// Asks the work that `fileWork` shows to end: a copy to another device is dropped, a deletion
    /// ends between two entries. Nothing when none is shown.
    void stopFileWork() { m_works.stopShown(); }
    void trashRecords(RecordPick pick, Finished finished = {});
    void deleteRecordsPermanently(RecordPick pick, Finished finished = {});
    /// Moves records of any list; an error means that the Safe Area could not be opened and nothing
    /// changed. Links above them, below the list's root, are not followed.
    void moveRecordsToSafeArea(RecordPick pick, Finished finished = {});
    /// Moves the ticked suggestions; an error means that the Safe Area could not be opened and
    /// nothing changed.
    void moveSelectedCleanupToSafeArea(Finished finished = {});
    /// Removes the group's items with these ids. For the Safe Area, `moved` gets how many moved and
    /// how many were to be (or were tried until it was stopped); it is not called after an error.
    void cleanJunkItems(const JunkGroup& group, std::unordered_set<Uuid> ids, ActionKind action,
        std::function<void(std::size_t moved, std::size_t requested)> moved = {},
        Finished finished = {});
    /// Puts an item, of an earlier run too, at its `originalPath`; never over something else.
    void restoreFromSafeArea(const QuarantineItem& item, Finished finished = {});
    /// Restores every held item, one after the other; those that cannot be restored stay listed.
    void restoreAllFromSafeArea(Finished finished = {});
    /// Deletes an item, of an earlier run too, for good.
    void deleteFromSafeArea(const QuarantineItem& item, Finished finished = {});
    /// Deletes every held item for good. Items that cannot be deleted leave the list all the same.
    void emptySafeArea(Finished finished = {});
    /// Looks through the holding folder for items that are in no list.
    void findEarlierHeldItems(Finished finished = {});
    /// Restores the earlier items whose place is known; the others, and those that cannot be
    /// restored, stay listed.
    void restoreAllEarlierHeldItems(Finished finished = {});
    /// Deletes every earlier item for good; those that cannot be deleted stay listed.
    void deleteAllEarlierHeldItems(Finished finished = {});
    void clearHistory();
    /// @}

    /// @name Taking back
    /// @{
    using Undone = std::function<void(const UndoReport&)>;
    /// Puts everything that the last move took back to its place, replacing nothing, and lists
    /// again what lies there, as far as the list has not been replaced meanwhile. From the Trash
    /// that adds one event, from the Safe Area one for every item, as restoring does. Does nothing
    /// without an offer.
    void undoLastMove(Undone finished = {});
    /// The offer is not up any more.
    void withdrawUndo();
    /// @}

    /// @name Ticks of the suggestions
    /// @{
    void setCleanupSelected(const Uuid& id, bool selected);
    void selectAllCleanup();
    void deselectAllCleanup();
    /// @}

    /// @name The desktop
    /// What opens these is found out off the main thread; an error says why nothing did.
    /// @{
    void openUrl(const std::string& url, Finished finished = {});
    /// Opens the file or folder at this path, byte for byte.
    void openItem(const std::string& path, Finished finished = {});
    /// @}

    /// @name Access to protected folders
    /// @{
    /// Probes again. At most a dozen folders are looked at.
    void refreshFullDiskAccess();
    /// Opens the system's privacy settings where there are any.
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

    using PathSet = std::unordered_set<std::string>;
    /// What did not come back when a move was taken back.
    using Missing = std::shared_ptr<const PathSet>;
    /// Called with whether the list shows again what came back.
    using Relisted = std::function<void(bool listed)>;
    /// What a history event says of how much came back.
    using Describe = std::function<std::string(const RemovalTally&)>;
    /// What it takes to take a move back.
    struct UndoableMove {
        ActionKind action = ActionKind::trash;
        std::int64_t count = 0;
        std::vector<TrashedItem> trashed = {};
        std::vector<QuarantineItem> held = {};
        /// The detail of the event, for what came back from the Trash.
        Describe describe = {};
        std::function<void(const Missing&, Relisted)> relist = {};
        /// The list that it came from goes with the next storage scan.
        bool isOfStorageScan = false;
    };
    /// Suggestions that were cut from a list.
    struct CandidateCut {
        std::shared_ptr<const CandidateList> candidates;
        std::vector<std::uint32_t> positions; ///< ascending
    };
    using RecordsCut = std::function<void(const std::shared_ptr<const RecordPick>& cut)>;
    using CandidatesCut = std::function<void(const std::shared_ptr<const CandidateCut>& cut)>;

    /// Announces, assigns and announces again: the only way a field changes. Returns the old value.
    template <class T> T publish(Field field, T& slot, T value)
    {
        Q_EMIT fieldWillChange(field);
        std::swap(slot, value);
        Q_EMIT fieldChanged(field);
        return value;
    }

    /// The same for a list that is changed in its place, because copying it takes long.
    template <class Change> void publishChange(Field field, Change change)
    {
        Q_EMIT fieldWillChange(field);
        change();
        Q_EMIT fieldChanged(field);
    }

    void finishStorageScan(ScanResult result);
    void forgetScanned();
    void cancelDuplicateAnalysis();
    void forgetDuplicates();
    void searchForDuplicates();
    void removeRecords(
        RecordPick pick, ActionKind action, const std::string& title, Finished finished);
    /// `then` gets what was cut from the list, or null when that failed.
    void dropRecords(std::shared_ptr<const RecordPick> pick, RecordsCut then);
    void dropCandidates(std::shared_ptr<const CandidateList> from,
        std::shared_ptr<const std::vector<std::uint32_t>> positions, CandidatesCut then);
    void addToQuarantine(std::vector<QuarantineItem> items);
    void forgetQuarantined(const std::unordered_set<Uuid>& ids);
    /// What becomes of listed items that resist their deletion.
    enum class Undeleted { stayListed, areForgotten };
    void deleteHeldItems(std::vector<QuarantineItem> items, Undeleted undeleted,
        const std::string& title, Finished finished);
    using BusyItems = std::shared_ptr<const std::vector<Uuid>>;
    /// Marks the items as busy until they are released; several operations may want the same one.
    BusyItems keepBusy(const std::vector<QuarantineItem>& items);
    void release(const BusyItems& items);
    /// Offers to take the move back in the place of an earlier one. When nothing moved, that one
    /// stays; when something was deleted for good, there is none.
    void offerUndo(UndoableMove move);
    /// Offers to take back a removal of `cut` from the records, which only the Trash allows.
    void offerUndoOfRecords(ActionKind action, const RemovalReport& removed,
        const std::shared_ptr<const RecordPick>& cut, Describe describe);
    /// Takes held items that are about to be deleted out of the offer.
    void narrowUndo(const std::vector<QuarantineItem>& deleted);
    /// Tells of the folder that a deletion was stopped in: an event, before that of the deletion.
    void tellOfPart(const WorkMeter& work);
    /// How far putting held items back has come.
    struct HeldReturn {
        std::shared_ptr<const std::vector<QuarantineItem>> items;
        BusyItems busy = {};
        std::shared_ptr<WorkMeter> work = {};
        std::size_t next = 0;
        UndoReport report = {};
        PathSet missing = {};
    };
    using HeldReturned = std::function<void(UndoReport, const PathSet& missing)>;
    /// Restores the items in order, one event for each.
    void restoreHeld(HeldReturn state, HeldReturned finished);
    void relistRecords(
        const std::shared_ptr<const RecordPick>& cut, const Missing& missing, Relisted then);
    void relistCandidates(
        const std::shared_ptr<const CandidateCut>& cut, const Missing& missing, Relisted then);
    /// Whether the item at `path` lies there again: it is there, and it is no newcomer in the place
    /// of something that did not come back.
    static bool isBack(const std::string& path, const PathSet& missing, const FilePlaces& places);
    using JunkFound = std::function<void(JunkItems items)>;
    /// Scans the category when those before it are done, and hands over what it found.
    void scanJunk(JunkCategory category, const std::stop_token& stop, JunkFound found);
    void deliverJunk(JunkCategory category, std::uint64_t scan, JunkItems items);
    /// Items that are taken out of a group.
    struct JunkCut {
        JunkGroup before;
        JunkItems left; ///< of those that were there before
    };
    /// Groups as they were when items were taken from them.
    using JunkBefore = std::shared_ptr<const std::vector<JunkGroup>>;
    /// Takes out what the cuts do not leave, and returns the groups that it was in.
    JunkBefore dropJunk(const std::vector<JunkCut>& cuts);
    /// Lists again what came back, as far as the groups have not been scanned anew.
    void relistJunk(const JunkBefore& before, const Missing& missing, Relisted then);
    /// Giving back the memory of a million records takes longer than a frame.
    template <class T> void disposeInBackground(T value)
    {
        m_disposalQueue.post(
            [value = std::make_shared<T>(std::move(value))]() mutable { value.reset(); });
    }
    void listInstalledApps();
    /// Moves first the application, if it is to go too, and then its leftovers.
    void trashApp(InstalledApp app, bool withApp, bool withLeftovers, Finished finished);
    void endAppRemoval();
    /// An application as it was before it, or leftovers of it, went.
    struct AppCut {
        InstalledApp app;
        std::size_t position; ///< in the list
        std::uint64_t listing; ///< which list that was
    };
    /// How far an application was to go, and did.
    enum class AppFate { stays, wasTried, isInTrash };
    /// Takes the leftovers out that are not among `rest`, and without any rest the application too
    /// unless it was to stay.
    std::shared_ptr<const AppCut> dropApp(
        const Uuid& id, AppFate fate, std::vector<LeftoverFile> rest);
    void relistApp(const std::shared_ptr<const AppCut>& cut, const Missing& missing, Relisted then);
    /// Moves one file to the Trash, and no folder in its place; see `TrashOptions::noLinksBelow`.
    /// `moved` is called when that was done, and else `finished`.
    void trashOneFile(const std::string& path, const std::string& noLinksBelow, Finished finished,
        std::function<void(const TrashedItem& item)> moved);
    /// Where the way to a finding's file must not lead through links.
    std::string walkedFolderOf(const SecurityFinding& finding) const;
    /// Takes the entries with the id of `item` out of `list`, which is replaced when `run` changes,
    /// and offers to take the move of `trashed` back. Gives whether there were any.
    template <class T>
    bool dropListed(Field field, std::vector<T>& list, const std::uint64_t& run, const T& item,
        const TrashedItem& trashed, const std::string& name);
    void openWith(std::function<Workspace::Opened()> open, Finished finished);
    void recordEvent(const std::string& title, std::string detail);
    /// One event for each detail, the last of which is the newest.
    void recordEvents(const std::string& title, std::vector<std::string> details);
    static void report(const Finished& finished, const std::string& error);
    bool probeFullDiskAccess() const;
    using NumberedMemory = Numbered<std::optional<MemorySnapshot>>;
    using NumberedProcesses = Numbered<std::vector<AppProcessInfo>>;
    void readMemory();
    void publishMemory(NumberedMemory memory);
    void publishProcesses(NumberedProcesses processes);

    // Fixed at construction.
    std::shared_ptr<FileScanning> m_scanner;
    Platform m_platform;
    DuplicateFinder m_findDuplicates;
    JunkScanner m_scanJunk;
    std::shared_ptr<const SystemMonitor> m_monitor;
    std::shared_ptr<std::atomic<std::uint64_t>> m_readingsBegun
        = std::make_shared<std::atomic<std::uint64_t>>(0); // of memory and processes
    UpdaterController m_updaterController;
    std::shared_ptr<const AppUninstaller> m_appUninstaller;
    std::shared_ptr<const SecurityScanner> m_securityScanner;

    // Published fields; main thread only.
    AppSection m_section = AppSection::dashboard;
    ScanPhase m_scanPhase;
    std::shared_ptr<const RecordList> m_records = std::make_shared<const RecordList>();
    std::shared_ptr<const DuplicateList> m_duplicates = std::make_shared<const DuplicateList>();
    std::shared_ptr<const CandidateList> m_cleanupCandidates
        = std::make_shared<const CandidateList>();
    CandidateSelection m_selectedCleanupIDs;
    std::vector<SecurityFinding> m_findings;
    std::vector<QuarantineItem> m_quarantine;
    std::vector<QuarantineItem> m_earlierQuarantine;
    std::unordered_map<Uuid, int> m_busyHeldItems; // how many operations work on each
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
    DuplicateProgress m_duplicateProgress;
    ScanPhase m_securityPhase;
    std::vector<InstalledApp> m_installedApps;
    bool m_isLoadingApps = false;
    std::vector<StartupItem> m_startupItems;
    bool m_isLoadingStartupItems = false;
    bool m_isFreezingRAM = false;
    std::int64_t m_ramFreedBytes = 0;
    std::string m_scanNotice;
    std::optional<UndoOffer> m_undoOffer;
    std::optional<FileWork> m_fileWork;
    std::optional<PartlyDeleted> m_partlyDeleted;
    bool m_scanRootWasOpened = true;
    UndoableMove m_undoableMove; // what the offer stands for

    // Main thread only. Only the scan, and the analysis, with the current run number may still
    // change anything.
    std::optional<std::stop_source> m_scanTask;
    std::uint64_t m_scanRun = 0;
    std::optional<std::stop_source> m_duplicateTask;
    std::uint64_t m_duplicateRun = 0;
    int m_merges = 0; // that are under way
    bool m_analysisWaits = false; // for them
    WorkBoard m_works{[this](const std::optional<FileWork>& work) {
        publish(Field::fileWork, m_fileWork, work);
    }};
    std::optional<std::stop_source> m_junkScanTask;
    std::uint64_t m_junkScanRun = 0;
    std::map<JunkCategory, std::uint64_t> m_junkScans; // how often each was asked for
    std::stop_source m_junkCategoryStop; // heard when the model goes
    std::optional<std::stop_source> m_appListing;
    std::uint64_t m_appListingRun = 0; // counts the lists of applications
    int m_appRemovals = 0; // that are under way
    std::uint64_t m_startupRun = 0; // counts the lists of startup items
    std::stop_source m_securityStop; // heard when the model goes
    std::uint64_t m_securityRun = 0; // counts the reviews that have ended
    std::string m_reviewedRoot; // of the records that `m_findings` were made from
    std::uint64_t m_shownMemory = 0; // the number of its reading
    std::uint64_t m_shownProcesses = 0;
    bool m_isReadingMemory = false;
    bool m_isReadingProcesses = false;

    // Used on the queue below only.
    std::shared_ptr<QuarantineStore> m_quarantineStore;

    ImpatientAsker m_volumeAsker; // how full volumes are
    SerialQueue m_scanQueue; // the scanner's own thread
    SerialQueue m_duplicateQueue; // one duplicate analysis at a time
    SerialQueue m_junkQueue; // the Smart Clean scanner's own thread: one category at a time
    SerialQueue m_uninstallerQueue; // the app uninstaller's own thread
    SerialQueue m_startupQueue; // lists startup items
    SerialQueue m_securityQueue{SerialQueue::Urgency::utility}; // the security scanner's own thread
    SerialQueue m_quarantineQueue; // the Safe Area store's own thread
    SerialQueue m_removalQueue; // Trash and deletion
    SerialQueue m_memoryQueue; // reads the counters
    SerialQueue m_processQueue; // lists the applications that run
    SerialQueue m_optimizerQueue; // makes the system reclaim memory
    SerialQueue m_desktopQueue; // asks the desktop to open things
    SerialQueue m_disposalQueue; // frees what takes long to free
};

} // namespace kestavon
