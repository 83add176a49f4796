#pragma once

#include "storage/file_scanning.h"
#include "storage/record_store.h"
#include "storage/visit_budget.h"
#include "walk/folder_walk.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace kestavon {

/// What one walk is to do.
struct TreeWalkOrder {
    std::string root; ///< absolute, without a trailing slash unless it is "/"
    std::vector<std::string> excludedPrefixes;
    std::uint64_t memoryLimitBytes = 0;
    VisitBudget::MemoryProbe memoryProbe;
    unsigned threads = 1;
    ScanProgressCounter* counter = nullptr; ///< used until `wait` has returned or thrown
    LiveCountSink postLiveCount;
    std::stop_token stop;
};

/// The walk of a storage scan: each thread leaves runs of records in a store of its own, the
/// entries of a folder in byte order.
class TreeWalk final : public FolderWalk {
public:
    explicit TreeWalk(TreeWalkOrder order);

    /// Waits for the walk's end. Throws `Cancelled` soon after a stop is requested, unless the walk
    /// met no entry at all.
    void waitForRecords();

    // What was found, to be looked at when the wait is over.
    std::vector<RecordStore>& stores() { return m_stores; }
    std::uint32_t folderCount() const { return m_folderCount; }
    bool hitMemoryLimit() const { return m_budget.isExhausted(); }
    std::optional<RootProblem> rootProblem() const { return m_rootProblem; }

private:
    class Recorder;

    std::unique_ptr<Visitor> makeVisitor(unsigned worker) override;
    void begin(Worker& worker) override;
    void noteExhaustion() override { m_budget.exhaust(); }
    void report(std::size_t records);

    const TreeWalkOrder m_order;
    VisitBudget m_budget;
    std::vector<RecordStore> m_stores; // each its own worker's
    std::optional<RootProblem> m_rootProblem; // set by the first task
    std::atomic<std::uint32_t> m_folderCount = 1; // the root is number 0

    std::mutex m_reportMutex;
    bool m_abandoned = false; // guarded by m_reportMutex
};

} // namespace kestavon
