#include "security/security_scanner.h"

#include "core/domain/removal_guard.h"
#include "duplicates/sha256_hex.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace kestavon {

SecurityScanner::SecurityScanner(std::vector<std::string> persistenceMarkers)
    : m_persistenceMarkers(std::move(persistenceMarkers))
{
}

std::vector<SecurityFinding> SecurityScanner::scan(const RecordList& records,
    const std::unordered_set<std::string>& signatures, const std::stop_token& stop) const
{
    std::vector<SecurityFinding> findings;
    const auto isPersistenceFolder = persistenceFoldersIn(records);
    for (std::size_t i = 0; i < records.size() && !stop.stop_requested(); ++i) {
        if (records.isDirectory(i))
            continue;
        const auto add = [&](ThreatLevel level, std::string reason) {
            findings.push_back({.id = Uuid::random(),
                .path = records.path(i),
                .level = level,
                .reason = std::move(reason)});
        };
        if (!signatures.empty()) {
            const auto digest = sha256Hex(records.path(i), stop);
            if (digest && signatures.contains(*digest))
                add(ThreatLevel::confirmed, "Matched local SHA-256 signature database");
        }
        if (isPersistenceFolder[records.folderOf(i)] || isPersistenceFile(records, i))
            add(ThreatLevel::unknown, "Persistence location — review recommended");
    }
    std::ranges::stable_sort(findings, std::greater(), &SecurityFinding::level);
    return findings;
}

/// Marks the folders whose files have a marker in their paths. Such a marker ends with a slash, so
/// the folder's path alone tells, and what a folder is, all that lie in it are.
std::vector<bool> SecurityScanner::persistenceFoldersIn(const RecordList& records) const
{
    std::vector<bool> isMarked(records.folderCount());
    for (std::uint32_t folder = 0; folder < isMarked.size(); ++folder)
        isMarked[folder]
            = isMarked[records.folderParent(folder)] || holdsMarker(records.folderPath(folder));
    return isMarked;
}

/// Whether a marker that is no folder's is the end of the file's path. Few names are any marker's.
bool SecurityScanner::isPersistenceFile(const RecordList& records, std::size_t record) const
{
    return std::ranges::any_of(m_persistenceMarkers, [&](const std::string& marker) {
        return !marker.ends_with('/') && lastComponent(marker) == records.name(record)
            && records.path(record).ends_with(marker);
    });
}

bool SecurityScanner::holdsMarker(const std::string& folder) const
{
    const auto path = folder + '/';
    return std::ranges::any_of(m_persistenceMarkers, [&path](const std::string& marker) {
        return marker.ends_with('/') && path.find(marker) != path.npos;
    });
}

} // namespace kestavon
