#include "core/model/removal_worker.h"

#include "core/domain/record_list.h"

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
    RemovalTally tally;
    for (const auto& request : requests) {
        if (stop.stop_requested())
            break;
        if (!m_protectedPlaces.mayRemove(request.path))
            continue;
        // Nobody saw what is in a folder that has taken a file's place.
        if (!request.isDirectory && m_places.kindOf(request.path) == EntryKind::folder)
            continue;
        if (!m_remove(request.path))
            continue;
        ++tally.count;
        tally.bytes = saturatingSum(tally.bytes, request.bytes);
    }
    return tally;
}

} // namespace kestavon
