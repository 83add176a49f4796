#include "core/model/removal_worker.h"

#include "core/domain/record_list.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kestavon {

RemovalTally& RemovalTally::operator+=(const RemovalTally& other)
{
    count += other.count;
    bytes = saturatingSum(bytes, other.bytes);
    return *this;
}

RemovalReport& RemovalReport::operator+=(RemovalReport other)
{
    tally += other.tally;
    tried += other.tried;
    std::ranges::move(other.trashed, std::back_inserter(trashed));
    return *this;
}

RemovalWorker::RemovalWorker(const ProtectedPlaces& protectedPlaces, const FilePlaces& places,
    Remove remove, Remove removeNonFolders)
    : m_protectedPlaces(protectedPlaces)
    , m_places(places)
    , m_remove(std::move(remove))
    , m_removeNonFolders(std::move(removeNonFolders))
{
}

RemovalReport RemovalWorker::run(
    std::span<const RemovalRequest> requests, const std::stop_token& stop) const
{
    constexpr std::size_t atATime = 256;
    RemovalReport report;
    bool isCancelled = false;
    while (!requests.empty() && !isCancelled && !stop.stop_requested()) {
        const bool areFolders = requests.front().isDirectory;
        std::vector<std::string> paths;
        std::vector<RemovalTally> tallies;
        std::vector<std::size_t> numbers; // of the requests
        std::size_t next = 0;
        for (; next < requests.size() && paths.size() < atATime; ++next) {
            const auto& request = requests[next];
            if (request.isDirectory != areFolders)
                break;
            if (!mayRemove(request))
                continue;
            paths.push_back(request.path);
            tallies.push_back({.count = 1, .bytes = request.bytes});
            numbers.push_back(next);
        }
        const auto results
            = (areFolders || !m_removeNonFolders ? m_remove : m_removeNonFolders)(paths);
        for (std::size_t i = 0; i < results.size(); ++i) {
            if (!results[i]) {
                const bool wasTried = results[i].error().kind != FileError::Kind::cancelled
                    || !stop.stop_requested();
                if (!wasTried && !std::exchange(isCancelled, true))
                    next = numbers[i];
                continue;
            }
            report.tally += tallies[i];
            if (!results[i]->empty())
                report.trashed.push_back(
                    {.originalPath = paths[i], .trashedPath = *results[i], .tally = tallies[i]});
        }
        report.tried += next;
        requests = requests.subspan(next);
    }
    return report;
}

bool RemovalWorker::mayRemove(const RemovalRequest& request) const
{
    if (!m_protectedPlaces.mayRemove(request.path))
        return false;
    // Nobody saw what is in a folder that has taken a file's place.
    return request.isDirectory || m_removeNonFolders
        || m_places.kindOf(request.path) != EntryKind::folder;
}

} // namespace kestavon
