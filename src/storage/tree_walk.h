#pragma once

#include "concurrency/work_stealing_queues.h"
#include "storage/exclusions.h"
#include "storage/file_scanning.h"
#include "storage/folder_reader.h"
#include "storage/record_store.h"
#include "storage/visit_budget.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
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

/// One walk through a folder tree by several threads. Each takes a folder, lists it, looks at its
/// entries in byte order and leaves a run of them in a store of its own; the folders among them
/// are the next tasks. A folder too large for one reading is cut into slices that other threads
/// look at while it is still being listed.
///
/// The threads own the walk together with whoever started it: a read from a dead network share may
/// never return, and then a stopped walk is left behind with the thread that is stuck in it.
class TreeWalk : public std::enable_shared_from_this<TreeWalk> {
public:
    explicit TreeWalk(TreeWalkOrder order);

    /// Sets the threads going; `wait` must follow.
    void start();

    /// Waits for the walk's end. Throws `Cancelled` soon after a stop is requested, unless the walk
    /// met no entry at all.
    void wait();

    // What was found, to be looked at when `wait` has returned.
    std::vector<RecordStore>& stores() { return m_stores; }
    std::uint32_t folderCount() const { return m_folderCount; }
    bool hitMemoryLimit() const { return m_budget.isExhausted(); }
    std::optional<RootProblem> rootProblem() const { return m_rootProblem; }
    std::uint64_t unreadableFolders() const { return m_unreadableFolders; }

private:
    class Worker;

    /// A folder as its subfolders and slices see it.
    struct Folder {
        std::uint32_t number = 0;
        std::uint64_t device = 0;
        /// Paths are opened from here. Deep in a tree it is a folder on the way, since no path
        /// longer than PATH_MAX can be opened; else the walk's root.
        std::shared_ptr<const FileDescriptor> base;
        std::string path; ///< below `base`; empty for itself
        Exclusions exclusions;
        std::atomic<bool> isUnreadable = false;
    };

    /// A part of a large folder's listing.
    struct Slice {
        std::shared_ptr<const FileDescriptor> file;
        std::unique_ptr<char[]> block;
        std::size_t bytes;
    };

    /// What a worker does next: look at a slice of `folder`, or read its subfolder `name`, or, when
    /// there is no folder yet, read the root.
    struct Task {
        std::shared_ptr<Folder> folder;
        const char* name = nullptr;
        std::uint64_t device = 0;
        std::uint32_t number = 0;
        std::unique_ptr<Slice> slice;
    };

    void work(unsigned worker);
    void report(std::size_t records);
    void noteUnreadable(Folder& folder);
    void stopForGood();

    const TreeWalkOrder m_order;
    const FolderOpener m_opener;
    VisitBudget m_budget;
    WorkStealingQueues<Task> m_queues;
    std::vector<RecordStore> m_stores; // each its own worker's
    std::optional<RootProblem> m_rootProblem; // set by the first task
    std::atomic<std::uint32_t> m_folderCount = 1; // the root is number 0
    std::atomic<std::uint64_t> m_unreadableFolders = 0;
    std::atomic<unsigned> m_waitingSlices = 0;

    std::mutex m_reportMutex;
    bool m_abandoned = false; // guarded by m_reportMutex

    std::mutex m_leaveMutex;
    std::condition_variable_any m_left;
    unsigned m_working = 0; // guarded by m_leaveMutex
    bool m_sawStop = false; // guarded by m_leaveMutex
};

} // namespace kestavon
