#pragma once

#include "core/domain/cleanup_candidate.h"
#include "smartclean/junk_findings.h"
#include "smartclean/location_scan.h"
#include "smartclean/smart_scanner.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// One run through the locations of a category, folder by folder, on a thread of its own. When
/// nothing comes of a folder for a while, because its disk does not answer, another thread goes on
/// with the next; threads that never come back are left behind, and own this together with whoever
/// waits.
class CategoryScan : public std::enable_shared_from_this<CategoryScan> {
public:
    CategoryScan(std::shared_ptr<const HostLayout> layout, SmartScannerTools tools,
        JunkCategory category, ScanPatience patience);

    /// As `SmartScanner::scanCategory`; once.
    std::vector<CleanupCandidate> run(const std::stop_token& stop);

private:
    using Place = std::list<JunkFindings>::iterator;

    /// A folder to look in, or the location whose folders are to be found first.
    struct Step {
        const JunkLocation* location;
        std::optional<std::string> folder;
        Place findings; ///< for a location: what its folders' come before
    };

    bool startThread();
    void work();
    void takeSteps();
    std::optional<Step> nextStep();
    void addFolders(const Step& location, std::vector<std::string> folders);
    void waitForEnd(std::unique_lock<std::mutex>& lock, const std::stop_token& stop);
    void waitForStopped(std::unique_lock<std::mutex>& lock);

    const std::shared_ptr<const HostLayout> m_layout;
    const SmartScannerTools m_tools;
    const ScanPatience m_patience;
    std::stop_source m_stop;
    const std::shared_ptr<std::atomic<std::uint64_t>> m_moves; ///< shared with walks' threads
    const std::shared_ptr<ScanKnowledge> m_knowledge;

    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    std::deque<Step> m_steps; // guarded by m_mutex
    std::list<JunkFindings> m_findings; // guarded by m_mutex; each also by its own
    unsigned m_working = 0; // guarded by m_mutex
    std::exception_ptr m_failure; // guarded by m_mutex
};

} // namespace kestavon
