#include "smartclean/junk_findings.h"

#include <utility>

namespace kestavon {

std::size_t JunkFindings::add(FileRecord record, const std::string& label)
{
    const std::lock_guard lock(m_mutex);
    m_items.push_back({std::move(record), &label});
    return m_items.size() - 1;
}

void JunkFindings::setSize(std::size_t position, std::int64_t bytes)
{
    const std::lock_guard lock(m_mutex);
    m_items[position].record.size = bytes;
}

void JunkFindings::takeInto(std::vector<CleanupCandidate>& candidates)
{
    const std::lock_guard lock(m_mutex);
    for (auto& [record, label] : m_items) {
        if (record.size < 1)
            continue;
        const auto bytes = record.size;
        candidates.push_back({.id = Uuid::random(),
            .record = std::move(record),
            .reason = *label,
            .estimatedBytes = bytes});
    }
}

} // namespace kestavon
