#include "core/domain/removal_guard.h"
#include "core/model/app_model.h"
#include "core/model/background.h"
#include "platform/byte_count.h"
#include "platform/resident_memory.h"
#include "storage/cleanup_suggestions.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <thread>

namespace kestavon {

namespace {

std::string rootProblemText(RootProblem problem)
{
    switch (problem) {
    case RootProblem::missing: return "it does not exist.";
    case RootProblem::notAFolder: return "it is not a folder.";
    case RootProblem::notPermitted: return "you don't have permission to read it.";
    case RootProblem::notStorage: return "it shows the state of the system and holds no files.";
    case RootProblem::unreadable: break;
    }
    return "it could not be read.";
}

/// What a person should know of how the scan went; empty when it saw everything.
std::string noticeFor(const std::string& root, const ScanOutcome& outcome)
{
    if (outcome.rootProblem)
        return "The folder \"" + root
            + "\" could not be opened: " + rootProblemText(*outcome.rootProblem);
    if (outcome.unreadableFolders == 1)
        return "1 folder could not be read; what it holds is not counted here.";
    if (outcome.unreadableFolders > 1)
        return std::to_string(outcome.unreadableFolders)
            + " folders could not be read; what they hold is not counted here.";
    return {};
}

std::string memoryText(std::uint64_t bytes)
{
    constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
    return memoryByteCount(static_cast<std::int64_t>(std::min(bytes, most)));
}

/// Lists of earlier scans, below this number of records, take too little memory to matter.
constexpr std::size_t smallList = 100'000;
constexpr auto patienceWithViews = std::chrono::seconds(2);

/// Large lists that nobody is to need any more, but that a view may still be letting go of.
class LeavingLists {
public:
    void add(const std::shared_ptr<const RecordList>& records)
    {
        if (records && records->size() >= smallList)
            m_lists.emplace_back(records);
    }

    /// Waits a while for the last of them to go: a scan stops at a limit of memory, and must not
    /// meet there what an earlier one has found. Any thread but the main one.
    void waitUntilGone(const std::stop_token& stop) const
    {
        const auto end = std::chrono::steady_clock::now() + patienceWithViews;
        const auto maySleep
            = [&] { return !stop.stop_requested() && std::chrono::steady_clock::now() < end; };
        while (!std::ranges::all_of(m_lists, [](const auto& list) { return list.expired(); })
            && maySleep())
            std::this_thread::sleep_for(pause);
        // Whoever let go last may still be giving the memory back.
        std::optional<std::uint64_t> before;
        for (auto now = m_lists.empty() ? std::nullopt : residentMemoryBytes();
             now && (!before || *now < *before) && maySleep(); now = residentMemoryBytes()) {
            before = now;
            std::this_thread::sleep_for(pause);
        }
    }

private:
    static constexpr auto pause = std::chrono::milliseconds(5);

    std::vector<std::weak_ptr<const RecordList>> m_lists;
};

} // namespace

/// What one scan hands to the main thread, ready to publish.
struct AppModel::ScanResult {
    ScanOutcome outcome;
    std::shared_ptr<const CandidateList> candidates;
    CandidateSelection selection; ///< every candidate
    std::string notice;
};

void AppModel::startStorageScan()
{
    if (m_scanTask)
        m_scanTask->request_stop();
    cancelDuplicateAnalysis();
    LeavingLists leaving;
    leaving.add(m_records);
    leaving.add(m_duplicates->records());
    leaving.add(m_cleanupCandidates->records());
    forgetScanned();
    publish(Field::liveFileCount, m_liveFileCount, std::int64_t{0});
    publish(Field::scanNotice, m_scanNotice, {});
    refreshDiskSpace();
    publish(Field::scanPhase, m_scanPhase, ScanPhase::scanning("Starting scan…"));

    const auto& task = m_scanTask.emplace();
    const auto run = ++m_scanRun;
    const auto isCurrent
        = [run](const AppModel* model) { return model && model->m_scanRun == run; };
    const LiveCountSink postLiveCount = [isCurrent, self = QPointer<AppModel>(this)](auto count) {
        MainQueue::instance().post([isCurrent, self, count] {
            if (isCurrent(self))
                self->publish(Field::liveFileCount, self->m_liveFileCount, count);
        });
    };

    auto scan = [scanner = m_scanner, platform = m_platform, root = m_selectedRoot, postLiveCount,
                    leaving = std::move(leaving), stop = task.get_token()] {
        leaving.waitUntilGone(stop);
        ScanProgressCounter counter;
        ScanResult result;
        result.outcome = scanner->scan(root, counter, postLiveCount, stop);
        const CleanupSuggestions suggestions(
            platform.layout, *platform.calendar, platform.clock->now());
        result.candidates = suggestions.suggestFrom(result.outcome.records, stop);
        result.selection = CandidateSelection::all(*result.candidates);
        result.notice = noticeFor(root, result.outcome);
        return result;
    };
    runInBackground(
        m_scanQueue, this, std::move(scan), [this, isCurrent](Outcome<ScanResult> outcome) {
            if (!isCurrent(this))
                return; // stopped, or overtaken by a newer scan
            m_scanTask.reset();
            ++m_scanRun;
            if (outcome.value)
                finishStorageScan(std::move(*outcome.value));
            else if (outcome.cancelled())
                publish(Field::scanPhase, m_scanPhase, ScanPhase::idle());
            else
                publish(Field::scanPhase, m_scanPhase, ScanPhase::failed(outcome.error));
        });
}

/// Empties the lists that the last scan has filled, and lets go of whatever holds them.
void AppModel::forgetScanned()
{
    disposeInBackground(publish(Field::records, m_records, std::make_shared<const RecordList>()));
    forgetDuplicates();
    // A finished analysis beside an emptied list would claim that there are no duplicates.
    publish(Field::duplicatePhase, m_duplicatePhase, ScanPhase::idle());
    disposeInBackground(publish(
        Field::cleanupCandidates, m_cleanupCandidates, std::make_shared<const CandidateList>()));
    if (m_undoableMove.isOfStorageScan) {
        // The files can still be put back, but they will not be listed again.
        auto notListed = [](const Missing&, const Relisted& then) { then(false); };
        disposeInBackground(std::exchange(m_undoableMove.relist, notListed));
    }
}

void AppModel::stopStorageScan()
{
    if (m_scanTask)
        m_scanTask->request_stop();
    m_scanTask.reset();
    ++m_scanRun;
    publish(Field::scanPhase, m_scanPhase, ScanPhase::idle());
}

void AppModel::finishStorageScan(ScanResult result)
{
    const auto count = result.outcome.records->size();
    const bool hitLimit = result.outcome.hitMemoryLimit;
    m_scanRootWasOpened = !result.outcome.rootProblem;
    publish(Field::liveFileCount, m_liveFileCount, static_cast<std::int64_t>(count));
    publish(Field::records, m_records, std::move(result.outcome.records));
    publish(Field::cleanupCandidates, m_cleanupCandidates, std::move(result.candidates));
    publish(Field::selectedCleanupIDs, m_selectedCleanupIDs, std::move(result.selection));
    publish(Field::scanNotice, m_scanNotice, std::move(result.notice));
    publish(Field::scanPhase, m_scanPhase,
        hitLimit ? ScanPhase::partial(
            "Stopped at " + memoryText(result.outcome.memoryLimit) + "; results are partial")
                 : ScanPhase::finished());
    refreshDiskSpace();
    recordEvent(hitLimit ? "Storage scan stopped" : "Storage scan complete",
        std::to_string(count) + " items scanned");
}

} // namespace kestavon
