#pragma once

#include "core/domain/cleanup_candidate.h"
#include "core/domain/file_record.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace kestavon {

/// What was found in one folder so far. Any thread: who waits for it may take it while the thread
/// that looks for more is stuck.
class JunkFindings {
public:
    /// Adds an item and returns its position. The size of a folder is that of an empty one until
    /// it is set. `label` must outlive this.
    std::size_t add(FileRecord record, const std::string& label);
    /// In bytes.
    void setSize(std::size_t position, std::int64_t bytes);

    /// Moves the items to the end of the list, in their order, without those that are empty.
    void takeInto(std::vector<CleanupCandidate>& candidates);

private:
    struct Item {
        FileRecord record;
        const std::string* label;
    };

    std::mutex m_mutex;
    std::vector<Item> m_items; // guarded by m_mutex
};

} // namespace kestavon
