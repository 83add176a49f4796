#include "core/model/removal_worker.h"

#include "core/domain/record_list.h"

#include <algorithm>

namespace kestavon {

RemovalWorker::RemovalWorker(
    const ProtectedPlaces& protectedPlaces, const FilePlaces& places, Remove remove)
    : m_protectedPlaces(protectedPlaces)
    , m_places(places)
    , m_remove(std::move(remove))
{
}

RemovalTally RemovalWorker::run(
    std::span<const RemovalRequest> requests, const std::stop_token& stop)
{
    constexpr std::size_t atATime = 256;
    RemovalTally tally;
    while (!requests.empty() && !stop.stop_requested()) {
        const auto count = std::min(requests.size(), atATime);
        std::vector<std::string> paths;
        std::vector<std::int64_t> bytes;
        for (const auto& request : requests.first(count)) {
            if (!mayRemove(request))
                continue;
            paths.push_back(request.path);
            bytes.push_back(request.bytes);
        }
        requests = requests.subspan(count);
        const auto results = m_remove(paths);
        for (std::size_t i = 0; i < results.size(); ++i) {
            if (!results[i])
                continue;
            ++tally.count;
            tally.bytes = saturatingSum(tally.bytes, bytes[i]);
        }
    }
    return tally;
}

bool RemovalWorker::mayRemove(const RemovalRequest& request) const
{
    if (!m_protectedPlaces.mayRemove(request.path))
        return false;
    // Nobody saw what is in a folder that has taken a file's place.
    return request.isDirectory || m_places.kindOf(request.path) != EntryKind::folder;
}

} // namespace kestavon
