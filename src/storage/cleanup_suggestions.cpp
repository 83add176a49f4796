#include "storage/cleanup_suggestions.h"

#include "concurrency/cancelled.h"
#include "core/domain/removal_guard.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace kestavon {

namespace {

constexpr std::string_view cacheReason = "Application cache";
constexpr std::string_view downloadReason = "Old download";
constexpr std::int64_t youngestOldDownloadDays = 91;

/// How many folders or records are looked at between two looks at the stop token.
constexpr std::size_t stretch = 4096;

void throwIfStopped(std::size_t done, const std::stop_token& stop)
{
    if (done % stretch == 0 && stop.stop_requested())
        throw Cancelled{};
}

bool hasProtectedPrefix(std::string_view path)
{
    return std::ranges::any_of(protectedPathPrefixes,
        [path](std::string_view prefix) { return isAtOrBelow(path, prefix); });
}

std::string_view folderOf(std::string_view path)
{
    return path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
}

/// The last `bytes` bytes, or more, of a folder's path with a slash behind it; all of it when it is
/// shorter, but for the root's own part.
std::string tailOfPath(const RecordList& records, std::uint32_t folder, std::size_t bytes)
{
    std::string tail = "/";
    for (; folder != 0 && tail.size() < bytes; folder = records.folderParent(folder))
        tail.insert(0, records.folderName(folder)).insert(0, 1, '/');
    return folder == 0 && tail.size() < bytes ? records.root() + tail : tail;
}

} // namespace

/// What the paths of a folder's entries have in common, as far as the rule goes.
struct CleanupSuggestions::FolderTraits {
    std::size_t pathBytes = 0; ///< with a slash behind the path
    bool isProtected = false;
    bool isInCache = false;
    bool isInCachePlace = false;
    bool isKept = false; ///< from being there, not from being called a cache or a download
    bool isInDownloads = false;

    bool countsAsCache() const { return isInCache || (isInCachePlace && !isKept); }
    bool concernsTheRule() const { return !isProtected && (countsAsCache() || isInDownloads); }
};

CleanupSuggestions::CleanupSuggestions(
    const HostLayout& layout, const Calendar& calendar, Timestamp now)
    : m_layout(layout)
    , m_calendar(calendar)
    , m_now(now)
{
    for (const auto& marker : layout.cacheMarkers)
        m_longestMarker = std::max(m_longestMarker, marker.size());
    std::ranges::copy_if(
        layout.keptPlaces, std::back_inserter(m_keptInCaches), [&layout](const PlacePattern& kept) {
            return std::ranges::any_of(layout.cachePlaces, [&kept](const PlacePattern& cache) {
                return isAtOrBelow(kept.folder, cache.folder)
                    && (cache.below.empty() || kept.below.starts_with(".var/")
                        || kept.below.starts_with("snap/"));
            });
        });
}

bool CleanupSuggestions::isInCache(std::string_view path) const
{
    return std::ranges::any_of(m_layout.cacheMarkers,
        [path](const std::string& marker) { return path.find(marker) != path.npos; });
}

bool CleanupSuggestions::isInCachePlace(std::string_view path) const
{
    return std::ranges::any_of(
        m_layout.cachePlaces, [path](const PlacePattern& place) { return isInPlace(path, place); });
}

bool CleanupSuggestions::isKept(std::string_view path) const
{
    return std::ranges::any_of(
        m_keptInCaches, [path](const PlacePattern& place) { return isInPlace(path, place); });
}

/// Whether it is worth to look at the path of what is called `name`.
bool CleanupSuggestions::mayBeKept(std::string_view name) const
{
    return std::ranges::any_of(m_keptInCaches, [name](const PlacePattern& place) {
        return namePatternMatches(lastComponent(place), name);
    });
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
    if (isInCache(record.path) || (isInCachePlace(folderOf(record.path)) && !isKept(record.path)))
        return suggest(cacheReason);
    if (isInDownloads(record.path) && isOld(record.modifiedAt))
        return suggest(downloadReason);
    return std::nullopt;
}

CleanupSuggestions::FolderTraits CleanupSuggestions::traitsOf(std::string_view inside) const
{
    const auto folder = inside.substr(0, std::max<std::size_t>(inside.size(), 2) - 1);
    return {.pathBytes = inside.size(),
        .isProtected = hasProtectedPrefix(inside),
        .isInCache = isInCache(inside),
        .isInCachePlace = isInCachePlace(folder),
        .isKept = isKept(folder),
        .isInDownloads = isInDownloads(inside)};
}

bool CleanupSuggestions::mayBeNamedByTheRule(std::size_t pathBytes) const
{
    const auto isAsLong
        = [pathBytes](std::string_view path) { return path.size() + 1 == pathBytes; };
    return std::ranges::any_of(protectedPathPrefixes, isAsLong)
        || std::ranges::any_of(m_layout.downloadFolders, isAsLong);
}

/// A folder has what its parent has. What is new follows from its own name and a few above it, or
/// from a path of just the right length: no path is built for most folders, however deep they lie.
CleanupSuggestions::FolderTraits CleanupSuggestions::traitsBelow(
    const FolderTraits& parent, const RecordList& records, std::uint32_t folder) const
{
    auto traits = parent;
    const auto name = records.folderName(folder);
    traits.pathBytes += name.size() + 1;
    if (mayBeNamedByTheRule(traits.pathBytes)) {
        const auto inside = records.folderPath(folder) + '/';
        traits.isProtected = traits.isProtected || hasProtectedPrefix(inside);
        traits.isInDownloads = traits.isInDownloads || isInDownloads(inside);
    }
    if (!traits.isInCache && m_longestMarker > 0)
        traits.isInCache = isInCache(tailOfPath(records, folder, m_longestMarker + name.size()));
    const auto endsAPlace
        = [name](const PlacePattern& place) { return lastComponent(place) == name; };
    if (!traits.isInCachePlace && std::ranges::any_of(m_layout.cachePlaces, endsAPlace))
        traits.isInCachePlace = isInCachePlace(records.folderPath(folder));
    if (traits.isInCachePlace && !traits.isKept && mayBeKept(name))
        traits.isKept = isKept(records.folderPath(folder));
    return traits;
}

std::shared_ptr<const CandidateList> CleanupSuggestions::suggestFrom(
    std::shared_ptr<const RecordList> records, const std::stop_token& stop) const
{
    // A file's own name decides nothing but the guard's endings: everything else follows from its
    // folder, and there are a dozen files to a folder.
    std::vector<FolderTraits> traits(records->folderCount());
    for (std::uint32_t folder = 0; folder < traits.size(); ++folder) {
        throwIfStopped(folder, stop);
        if (folder == 0) {
            const auto& root = records->root();
            traits[0] = traitsOf(root.ends_with('/') ? root : root + '/');
        } else {
            traits[folder] = traitsBelow(traits[records->folderParent(folder)], *records, folder);
        }
    }

    auto candidates = std::make_shared<CandidateList>(records);
    for (std::size_t i = 0; i < records->size(); ++i) {
        throwIfStopped(i, stop);
        const auto& folder = traits[records->folderOf(i)];
        if (!folder.concernsTheRule() || records->isDirectory(i))
            continue;
        if (!isSafeToRemove(records->name(i)))
            continue;
        const auto position = static_cast<std::uint32_t>(i);
        const bool isKeptFile = !folder.isInCache && folder.isInCachePlace
            && mayBeKept(records->name(i)) && isKept(records->path(i));
        if (folder.countsAsCache() && !isKeptFile)
            candidates->append(position, cacheReason);
        else if (folder.isInDownloads && isOld(records->modifiedAt(i)))
            candidates->append(position, downloadReason);
    }
    return candidates;
}

} // namespace kestavon
