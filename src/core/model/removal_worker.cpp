#include "core/model/removal_worker.h"

#include "core/domain/record_list.h"
#include "core/domain/removal_guard.h"

#include <algorithm>
#include <iterator>

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
    std::ranges::move(other.trashed, std::back_inserter(trashed));
    return *this;
}

RemovalWorker::RemovalWorker(
    const ProtectedPlaces& protectedPlaces, const FilePlaces& places, Remove remove)
    : m_protectedPlaces(protectedPlaces)
    , m_places(places)
    , m_remove(std::move(remove))
{
}

RemovalReport RemovalWorker::run(
    std::span<const RemovalRequest> requests, Nested nested, const std::stop_token& stop)
{
    constexpr std::size_t atATime = 256;
    RemovalReport report;
    while (!requests.empty() && !stop.stop_requested()) {
        std::vector<Item> items;
        std::vector<std::string> paths;
        std::size_t next = 0;
        while (next < requests.size() && items.size() < atATime) {
            if (!mayRemove(requests[next])) {
                ++next;
                continue;
            }
            items.push_back(itemAt(requests, next, nested));
            paths.push_back(requests[next].path);
            next = items.back().end;
        }
        const auto results = m_remove(paths);
        for (std::size_t i = 0; i < results.size(); ++i) {
            const auto& [first, end, tally] = items[i];
            if (!results[i]) { // what lies in a folder that stays is tried by itself
                report += run(requests.subspan(first + 1, end - first - 1), nested, stop);
                continue;
            }
            report.tally += tally;
            if (!results[i]->empty())
                report.trashed.push_back(
                    {.originalPath = paths[i], .trashedPath = *results[i], .tally = tally});
        }
        requests = requests.subspan(next);
    }
    return report;
}

RemovalWorker::Item RemovalWorker::itemAt(
    std::span<const RemovalRequest> requests, std::size_t i, Nested nested) const
{
    const auto& folder = requests[i];
    Item item{.first = i, .end = i + 1, .tally = {.count = 1, .bytes = folder.bytes}};
    if (nested == Nested::oneByOne || !folder.isDirectory)
        return item;
    for (; item.end < requests.size(); ++item.end) {
        const auto& request = requests[item.end];
        if (!isAtOrBelow(request.path, folder.path))
            break;
        if (mayRemove(request) && m_places.kindOf(request.path)) // while it is still there
            item.tally += {.count = 1, .bytes = request.bytes};
    }
    return item;
}

bool RemovalWorker::mayRemove(const RemovalRequest& request) const
{
    if (!m_protectedPlaces.mayRemove(request.path))
        return false;
    // Nobody saw what is in a folder that has taken a file's place.
    return request.isDirectory || m_places.kindOf(request.path) != EntryKind::folder;
}

} // namespace kestavon
