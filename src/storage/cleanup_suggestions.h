#pragma once

#include "core/domain/candidate_list.h"
#include "platform/calendar.h"
#include "platform/host_layout.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string_view>
#include <vector>

namespace kestavon {

/// Decides which scanned files are suggested for removal: files in caches, and downloads that were
/// not modified for more than 90 days. Made for one moment; any thread.
class CleanupSuggestions {
public:
    /// `layout` and `calendar` must outlive this.
    CleanupSuggestions(const HostLayout& layout, const Calendar& calendar, Timestamp now);

    /// The suggestion for one record, or nothing.
    std::optional<CleanupCandidate> cleanupCandidate(const FileRecord& record) const;

    /// The suggestions for every record of the list, in its order. Looks at folders once, not at
    /// each of their files, so that it costs little beside the scan. Throws `Cancelled` once `stop`
    /// is requested.
    std::shared_ptr<const CandidateList> suggestFrom(
        std::shared_ptr<const RecordList> records, const std::stop_token& stop = {}) const;

private:
    struct FolderTraits;

    /// `inside`: a folder's path with a slash behind it.
    FolderTraits traitsOf(std::string_view inside) const;
    FolderTraits traitsBelow(
        const FolderTraits& parent, const RecordList& records, std::uint32_t folder) const;
    bool mayBeNamedByTheRule(std::size_t pathBytes) const;
    bool isInCache(std::string_view path) const;
    bool isInCachePlace(std::string_view path) const;
    bool isKept(std::string_view path) const;
    bool mayBeKept(std::string_view name) const;
    bool isInDownloads(std::string_view path) const;
    bool isOld(const std::optional<Timestamp>& modifiedAt) const;

    const HostLayout& m_layout;
    const Calendar& m_calendar;
    Timestamp m_now;
    std::size_t m_longestMarker = 0; ///< bytes of the longest text that marks a cache
    std::vector<PlacePattern> m_keptInCaches; ///< of `keptPlaces` those that can lie in a cache
};

} // namespace kestavon
