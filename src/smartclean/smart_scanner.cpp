#include "smartclean/smart_scanner.h"

#include "concurrency/cancelled.h"
#include "concurrency/thread_crew.h"
#include "smartclean/category_scan.h"

#include <chrono>
#include <mutex>
#include <utility>

namespace kestavon {

namespace {

// How long a stopped scan may take to list what it still lists: who takes longer is stuck in a read
// of a disk that does not answer, and is left behind.
constexpr auto patience = std::chrono::seconds(1);

/// Owned by the thread that scans together with whoever waits for it.
struct Run {
    CategoryScan scan;
    std::mutex mutex;
    std::vector<CleanupCandidate> candidates; // guarded by mutex

    void run()
    {
        auto found = scan.run();
        const std::lock_guard lock(mutex);
        candidates = std::move(found);
    }
};

} // namespace

SmartScanner::SmartScanner(HostLayout layout, SmartScannerTools tools)
    : m_layout(std::make_shared<const HostLayout>(std::move(layout)))
    , m_tools(std::move(tools))
{
}

std::vector<CleanupCandidate> SmartScanner::scanCategory(
    JunkCategory category, const std::stop_token& stop) const
{
    const std::shared_ptr<Run> run(
        new Run{CategoryScan(m_layout, m_tools, category, stop), {}, {}});
    try {
        runOnThreads(
            1, [run] { run->run(); }, stop, patience);
    } catch (const Cancelled&) { // what there is by now is what was found
    }
    const std::lock_guard lock(run->mutex);
    return std::move(run->candidates);
}

} // namespace kestavon
