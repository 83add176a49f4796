#pragma once

#include "storage/file_scanning.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kestavon {

/// The scanner of real folder trees: walks with several threads and gives the records in the order
/// of a depth-first walk that takes each folder's names in byte order.
class FileScanner final : public FileScanning {
public:
    /// Resident memory of this process in bytes, or nothing when that cannot be told.
    using MemoryProbe = std::function<std::optional<std::uint64_t>()>;

    /// What the program's own scans may take, in bytes.
    static constexpr std::uint64_t standardMemoryLimit = 1'073'741'824;

    /// Never records or enters anything at or below `excludedPrefixes` (absolute paths), and stops
    /// early when `probe`, asked at every 1000th entry visited, tells `memoryLimitBytes` or more.
    /// `threads` of 0 chooses by the machine.
    FileScanner(std::vector<std::string> excludedPrefixes, std::uint64_t memoryLimitBytes,
        MemoryProbe probe, unsigned threads = 0);

    /// Throws std::bad_alloc as well, when there is no memory to put in order what was found.
    ScanOutcome scan(const std::string& root, ScanProgressCounter& counter,
        const LiveCountSink& postLiveCount, std::stop_token stop) override;

private:
    std::vector<std::string> m_excludedPrefixes;
    std::uint64_t m_memoryLimitBytes;
    MemoryProbe m_probe;
    unsigned m_threads;
};

} // namespace kestavon
