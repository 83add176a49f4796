#pragma once

#include "core/domain/record_list.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>

namespace kestavon {

/// Records made so far in one scan; shared by the scan's threads and whoever asked for it.
class ScanProgressCounter {
public:
    std::int64_t count() const
    {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }

    /// Adds `records` and returns the new count.
    std::int64_t add(std::int64_t records)
    {
        const std::lock_guard lock(m_mutex);
        return m_count += records;
    }

private:
    mutable std::mutex m_mutex;
    std::int64_t m_count = 0; // guarded by m_mutex
};

/// Why a scan's root could not be walked.
enum class RootProblem {
    missing,
    notAFolder,
    notPermitted,
    notStorage, ///< what it shows is made up by the system as it is read, like /proc
    unreadable,
};

/// What a scan found.
struct ScanOutcome {
    std::shared_ptr<const RecordList> records; ///< never null; depth first, names in byte order
    bool hitMemoryLimit = false; ///< the scan stopped early; the records are those found before
    std::uint64_t memoryLimit = 1'073'741'824; ///< what it may take, in bytes

    std::optional<RootProblem> rootProblem
        = {}; ///< the root could not be opened: `records` is empty
    std::uint64_t unreadableFolders = 0; ///< folders whose entries could not be listed
};

/// Receives the live count; called on the scan's threads and must return at once.
using LiveCountSink = std::function<void(std::int64_t)>;

/// Walks folder trees.
class FileScanning {
public:
    virtual ~FileScanning() = default;

    /// Walks everything below the folder `root` (an absolute path; a link to a folder is followed)
    /// and returns its records; `counter` counts them as they are made, and `postLiveCount` gets
    /// every thousandth value (1000, 2000, …). Entries that cannot be read are skipped, and a root
    /// that cannot be walked gives an empty outcome. Throws `Cancelled` once `stop` is requested,
    /// and nothing else unless an implementation says so. One scan at a time; takes seconds to
    /// minutes: never on the main thread.
    virtual ScanOutcome scan(const std::string& root, ScanProgressCounter& counter,
        const LiveCountSink& postLiveCount, std::stop_token stop)
        = 0;
};

} // namespace kestavon
