#include "storage/cleanup_suggestions.h"

#include "core/domain/removal_guard.h"

#include <algorithm>
#include <vector>

namespace kestavon {

namespace {

constexpr std::string_view cacheReason = "Application cache";
constexpr std::string_view downloadReason = "Old download";
constexpr std::int64_t youngestOldDownloadDays = 91;

/// What the paths of a folder's entries have in common, as far as the rule goes.
struct FolderTraits {
    bool isProtected = false;
    bool isInCache = false;
    bool isInDownloads = false;

    bool concernsTheRule() const { return !isProtected && (isInCache || isInDownloads); }
};

bool hasProtectedPrefix(std::string_view path)
{
    return std::ranges::any_of(protectedPathPrefixes,
        [path](std::string_view prefix) { return isAtOrBelow(path, prefix); });
}

} // namespace

CleanupSuggestions::CleanupSuggestions(
    const HostLayout& layout, const Calendar& calendar, Timestamp now)
    : m_layout(layout)
    , m_calendar(calendar)
    , m_now(now)
{
}

bool CleanupSuggestions::isInCache(std::string_view path) const
{
    return std::ranges::any_of(m_layout.cacheMarkers,
        [path](const std::string& marker) { return path.find(marker) != path.npos; });
}

bool CleanupSuggestions::isInDownloads(std::string_view path) const
{
    return std::ranges::any_of(m_layout.downloadFolders, [path](const std::string& folder) {
        return path.size() > folder.size() && isAtOrBelow(path, folder);
    });
}

bool CleanupSuggestions::isOld(const std::optional<Timestamp>& modifiedAt) const
{
    return modifiedAt && m_calendar.wholeDays(*modifiedAt, m_now) >= youngestOldDownloadDays;
}

std::optional<CleanupCandidate> CleanupSuggestions::cleanupCandidate(const FileRecord& record) const
{
    if (record.isDirectory || !isSafeToRemove(record.path))
        return std::nullopt;
    const auto suggest = [&record](std::string_view reason) {
        return CleanupCandidate{.id = Uuid::random(),
            .record = record,
            .reason = std::string(reason),
            .estimatedBytes = record.size};
    };
    if (isInCache(record.path))
        return suggest(cacheReason);
    if (isInDownloads(record.path) && isOld(record.modifiedAt))
        return suggest(downloadReason);
    return std::nullopt;
}

std::shared_ptr<const CandidateList> CleanupSuggestions::suggestFrom(
    std::shared_ptr<const RecordList> records) const
{
    // A file's own name decides nothing but the guard's endings: everything else follows from its
    // folder, and there are a dozen files to a folder.
    std::vector<FolderTraits> traits(records->folderCount());
    for (std::uint32_t folder = 0; folder < traits.size(); ++folder) {
        auto inside = records->folderPath(folder);
        if (!inside.ends_with('/'))
            inside += '/';
        traits[folder] = {.isProtected = hasProtectedPrefix(inside),
            .isInCache = isInCache(inside),
            .isInDownloads = isInDownloads(inside)};
    }

    auto candidates = std::make_shared<CandidateList>(records);
    for (std::size_t i = 0; i < records->size(); ++i) {
        const auto& folder = traits[records->folderOf(i)];
        if (!folder.concernsTheRule() || records->isDirectory(i))
            continue;
        if (!isSafeToRemove(records->name(i)))
            continue;
        const auto position = static_cast<std::uint32_t>(i);
        if (folder.isInCache)
            candidates->append(position, cacheReason);
        else if (isOld(records->modifiedAt(i)))
            candidates->append(position, downloadReason);
    }
    return candidates;
}

} // namespace kestavon
